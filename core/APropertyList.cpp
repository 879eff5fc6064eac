#include "core/APropertyList.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>

#include <cstdint>
#include <cstring>
#include <limits>
#include <system_error>
#include <vector>

#include "core/AArray.h"
#include "core/ADictionary.h"
#include "core/APlistLibrary.h"
#include "core/AXMLPropertyListReader.h"

namespace com_qv_print_driver_core_cpp_util_v1 {

namespace {

constexpr int kMaxDepth = 256;
constexpr std::string_view kBinaryMagic = "bplist00";

// Owns what libplist hands over: a node tree, or plain memory.
class PlistOwner {
 public:
  PlistOwner(const APlistLibrary& plist, void* memory, bool node) : plist_(plist), memory_(memory), node_(node) {}
  PlistOwner(const PlistOwner&) = delete;
  PlistOwner& operator=(const PlistOwner&) = delete;
  ~PlistOwner() {
    if (memory_ == nullptr) return;
    if (node_) {
      plist_.freeNode(memory_);
    } else {
      plist_.Release(memory_);
    }
  }

 private:
  const APlistLibrary& plist_;
  void* memory_;
  bool node_;
};

void SetProblem(AQVString* problem, const AQVString& text) {
  if (problem != nullptr) *problem = text;
}

std::uint64_t ReadBigEndian(const unsigned char* p, std::size_t size) {
  std::uint64_t value = 0;
  for (std::size_t i = 0; i < size; ++i) value = (value << 8) | p[i];
  return value;
}

const char kNotAPropertyList[] = "the data is not a property list";
const char kTooDeep[] = "the property list nests deeper than 256 levels";
// libplist aborts on a dictionary key with a NUL character in it.
const char kNulCharacter[] = "a string in the property list holds a NUL character";

// The binary object table, read without trusting it: libplist recurses once
// per nesting level (a deep file overflows the stack), drops lone UTF-16
// surrogates and keeps non-ASCII bytes of ASCII strings, so nesting and
// strings are checked here before libplist sees the data.
class BinaryScan {
 public:
  explicit BinaryScan(std::string_view data)
      : bytes_(reinterpret_cast<const unsigned char*>(data.data())), size_(data.size()) {}

  bool Check(AQVString* problem) {
    if (size_ < kBinaryMagic.size() + 32) return Fail(problem, kNotAPropertyList);
    const unsigned char* trailer = bytes_ + size_ - 32;
    offsetSize_ = trailer[6];
    refSize_ = trailer[7];
    count_ = ReadBigEndian(trailer + 8, 8);
    const std::uint64_t top = ReadBigEndian(trailer + 16, 8);
    tableOffset_ = ReadBigEndian(trailer + 24, 8);
    if (offsetSize_ == 0 || offsetSize_ > 8 || refSize_ == 0 || refSize_ > 8 || tableOffset_ >= size_ ||
        count_ > (size_ - tableOffset_) / offsetSize_ || top >= count_) {
      return Fail(problem, kNotAPropertyList);
    }
    for (std::uint64_t object = 0; object < count_; ++object) {
      if (!CheckString(object, problem)) return false;
    }
    return CheckNesting(top, problem);
  }

 private:
  struct Object {
    unsigned kind = 0;
    std::uint64_t length = 0;  // elements, characters or bytes
    std::uint64_t start = 0;   // offset of the contents
  };

  static bool Fail(AQVString* problem, const char* text) {
    SetProblem(problem, text);
    return false;
  }

  bool Read(std::uint64_t object, Object& out) const {
    const std::uint64_t offset = ReadBigEndian(bytes_ + tableOffset_ + object * offsetSize_, offsetSize_);
    if (offset < kBinaryMagic.size() || offset >= size_) return false;
    const unsigned char marker = bytes_[offset];
    out.kind = marker >> 4;
    out.length = marker & 0x0F;
    out.start = offset + 1;
    const bool sized = out.kind == 0x4 || out.kind == 0x5 || out.kind == 0x6 || out.kind == 0xA ||
                       out.kind == 0xC || out.kind == 0xD;
    if (sized && out.length == 0x0F) {
      if (out.start >= size_ || (bytes_[out.start] >> 4) != 0x1) return false;
      const std::size_t lengthSize = std::size_t{1} << (bytes_[out.start] & 0x0F);
      if (lengthSize > 8 || out.start + 1 + lengthSize > size_) return false;
      out.length = ReadBigEndian(bytes_ + out.start + 1, lengthSize);
      out.start += 1 + lengthSize;
    }
    return true;
  }

  bool CheckString(std::uint64_t object, AQVString* problem) const {
    Object item;
    if (!Read(object, item)) return Fail(problem, kNotAPropertyList);
    if (item.kind != 0x5 && item.kind != 0x6) return true;
    const std::uint64_t unitSize = item.kind == 0x6 ? 2 : 1;
    if (item.start > size_ || item.length > (size_ - item.start) / unitSize) return Fail(problem, kNotAPropertyList);
    const unsigned char* text = bytes_ + item.start;
    if (item.kind == 0x5) {
      for (std::uint64_t i = 0; i < item.length; ++i) {
        if (text[i] >= 0x80) return Fail(problem, "a string in the property list is not valid UTF-8");
        if (text[i] == 0) return Fail(problem, kNulCharacter);
      }
      return true;
    }
    for (std::uint64_t i = 0; i < item.length; ++i) {
      const unsigned unit = (unsigned{text[2 * i]} << 8) | text[2 * i + 1];
      if (unit == 0) return Fail(problem, kNulCharacter);
      bool lone = unit >= 0xDC00 && unit <= 0xDFFF;
      if (unit >= 0xD800 && unit <= 0xDBFF) {
        const unsigned next = i + 1 < item.length ? (unsigned{text[2 * i + 2]} << 8) | text[2 * i + 3] : 0;
        lone = next < 0xDC00 || next > 0xDFFF;
        ++i;
      }
      if (lone) return Fail(problem, "a string in the property list holds a lone UTF-16 surrogate");
    }
    return true;
  }

  // Depth of containers below every object, iteratively and once per object
  // (objects may be shared); a reference cycle is no property list.
  bool CheckNesting(std::uint64_t top, AQVString* problem) const {
    enum : unsigned char { kNew, kOpen, kDone };
    std::vector<unsigned char> state(count_, kNew);
    std::vector<std::uint16_t> depth(count_, 0);
    struct Frame {
      std::uint64_t object;
      std::uint64_t refs;
      std::uint64_t start;
      std::uint64_t next;
    };
    std::vector<Frame> stack;
    auto open = [&](std::uint64_t object) {
      Object item;
      if (!Read(object, item)) return Fail(problem, kNotAPropertyList);
      state[object] = kOpen;
      const bool container = item.kind == 0xA || item.kind == 0xC || item.kind == 0xD;
      const std::uint64_t refs = !container ? 0 : item.kind == 0xD ? item.length * 2 : item.length;
      if (item.length > size_ || item.start > size_ || refs > (size_ - item.start) / refSize_) {
        return Fail(problem, kNotAPropertyList);
      }
      if (container && stack.size() >= static_cast<std::size_t>(kMaxDepth)) return Fail(problem, kTooDeep);
      stack.push_back(Frame{object, refs, item.start, 0});
      depth[object] = container ? 1 : 0;
      return true;
    };
    if (!open(top)) return false;
    while (!stack.empty()) {
      Frame& frame = stack.back();
      if (frame.next == frame.refs) {
        state[frame.object] = kDone;
        const std::uint16_t finished = depth[frame.object];
        stack.pop_back();
        if (!stack.empty()) {
          std::uint16_t& parent = depth[stack.back().object];
          if (finished + 1 > parent) parent = static_cast<std::uint16_t>(finished + 1);
          if (parent > kMaxDepth) return Fail(problem, kTooDeep);
        }
        continue;
      }
      const std::uint64_t child = ReadBigEndian(bytes_ + frame.start + frame.next * refSize_, refSize_);
      ++frame.next;
      if (child >= count_ || state[child] == kOpen) return Fail(problem, kNotAPropertyList);
      if (state[child] == kDone) {
        std::uint16_t& parent = depth[frame.object];
        if (depth[child] + 1 > parent) parent = static_cast<std::uint16_t>(depth[child] + 1);
        if (parent > kMaxDepth) return Fail(problem, kTooDeep);
        continue;
      }
      if (!open(child)) return false;
    }
    return true;
  }

  const unsigned char* bytes_;
  std::size_t size_;
  std::size_t offsetSize_ = 0;
  std::size_t refSize_ = 0;
  std::uint64_t count_ = 0;
  std::uint64_t tableOffset_ = 0;
};

// libplist's XML reader and its plist_free recurse once per nesting level, so
// the depth of <array> and <dict> elements is measured first (comments and
// CDATA sections skipped).
bool CheckXMLNesting(std::string_view text, AQVString* problem) {
  int depth = 0;
  std::size_t i = text.find('<');
  while (i != std::string_view::npos) {
    std::size_t end;
    if (text.compare(i, 4, "<!--") == 0) {
      end = text.find("-->", i + 4);
      if (end == std::string_view::npos) return true;
      end += 2;
    } else if (text.compare(i, 9, "<![CDATA[") == 0) {
      end = text.find("]]>", i + 9);
      if (end == std::string_view::npos) return true;
      end += 2;
    } else {
      end = text.find('>', i + 1);
      if (end == std::string_view::npos) return true;
      const bool closing = i + 1 < text.size() && text[i + 1] == '/';
      const std::size_t nameStart = i + (closing ? 2 : 1);
      const std::size_t nameEnd = text.find_first_of(" \t\r\n/>", nameStart);
      const std::string_view name = text.substr(nameStart, nameEnd - nameStart);
      if (name == "array" || name == "dict") {
        if (closing) {
          --depth;
        } else if (text[end - 1] != '/' && ++depth > kMaxDepth) {
          SetProblem(problem, kTooDeep);
          return false;
        }
      }
    }
    i = text.find('<', end + 1);
  }
  return true;
}

// libplist keeps integers as 64-bit unsigned values with a hidden sign; its
// XML writer shows the sign, so a value above INT64_MAX is asked there.
bool ReadInteger(const APlistLibrary& plist, plist_t node, std::int64_t& out) {
  std::uint64_t value = 0;
  plist.unsignedValue(node, &value);
  if (value <= static_cast<std::uint64_t>(std::numeric_limits<std::int64_t>::max())) {
    out = static_cast<std::int64_t>(value);
    return true;
  }
  char* xml = nullptr;
  std::uint32_t length = 0;
  plist.toXML(node, &xml, &length);
  const PlistOwner owner(plist, xml, false);
  if (xml == nullptr) return false;
  const std::string_view text(xml, length);
  const std::size_t open = text.find("<integer>");
  if (open == std::string_view::npos || open + 9 >= text.size() || text[open + 9] != '-') return false;
  out = static_cast<std::int64_t>(value);
  return true;
}

bool ReadString(const char* bytes, std::size_t length, AQVString& out, AQVString* problem) {
  std::optional<AQVString> text = AQVString::FromUTF8(std::string_view(bytes == nullptr ? "" : bytes, length));
  if (!text) {
    SetProblem(problem, "a string in the property list is not valid UTF-8");
    return false;
  }
  out = std::move(*text);
  return true;
}

bool Convert(const APlistLibrary& plist, plist_t node, int depth, AValue& out, AQVString* problem) {
  switch (plist.nodeType(node)) {
    case PLIST_BOOLEAN: {
      std::uint8_t value = 0;
      plist.boolValue(node, &value);
      out = AValue(value != 0);
      return true;
    }
    case PLIST_UINT: {
      std::int64_t value = 0;
      if (!ReadInteger(plist, node, value)) {
        SetProblem(problem, "an integer in the property list is out of the signed 64-bit range");
        return false;
      }
      out = AValue(static_cast<long long>(value));
      return true;
    }
    case PLIST_REAL: {
      double value = 0;
      plist.realValue(node, &value);
      out = AValue(value);
      return true;
    }
    case PLIST_STRING:
    case PLIST_KEY: {
      std::uint64_t length = 0;
      const char* bytes = plist.stringBytes(node, &length);
      AQVString text;
      if (!ReadString(bytes, static_cast<std::size_t>(length), text, problem)) return false;
      out = AValue(text);
      return true;
    }
    case PLIST_DATA: {
      std::uint64_t length = 0;
      const char* bytes = plist.dataBytes(node, &length);
      out = AValue::Data(bytes == nullptr ? std::string() : std::string(bytes, static_cast<std::size_t>(length)));
      return true;
    }
    case PLIST_DATE: {
      std::int32_t seconds = 0;
      std::int32_t microseconds = 0;
      plist.dateValue(node, &seconds, &microseconds);
      out = AValue::Date(static_cast<double>(seconds) + static_cast<double>(microseconds) / 1e6);
      return true;
    }
    case PLIST_ARRAY: {
      if (depth >= kMaxDepth) {
        SetProblem(problem, kTooDeep);
        return false;
      }
      AArray array;
      plist_array_iter iterator = nullptr;
      plist.newArrayIterator(node, &iterator);
      const PlistOwner owner(plist, iterator, false);
      while (true) {
        plist_t item = nullptr;
        plist.nextArrayItem(node, iterator, &item);
        if (item == nullptr) break;
        AValue value;
        if (!Convert(plist, item, depth + 1, value, problem)) return false;
        array.Append(value);
      }
      out = AValue(array);
      return true;
    }
    case PLIST_DICT: {
      if (depth >= kMaxDepth) {
        SetProblem(problem, kTooDeep);
        return false;
      }
      ADictionary::Items items;
      plist_dict_iter iterator = nullptr;
      plist.newDictionaryIterator(node, &iterator);
      const PlistOwner owner(plist, iterator, false);
      while (true) {
        char* key = nullptr;
        plist_t item = nullptr;
        plist.nextDictionaryItem(node, iterator, &key, &item);
        const PlistOwner keyOwner(plist, key, false);
        if (item == nullptr) break;
        AQVString keyText;
        if (!ReadString(key, key == nullptr ? 0 : std::strlen(key), keyText, problem)) return false;
        AValue value;
        if (!Convert(plist, item, depth + 1, value, problem)) return false;
        items.emplace_back(std::move(keyText), std::move(value));
      }
      out = AValue(ADictionary::FromItems(std::move(items)));
      return true;
    }
    case PLIST_UID:
      SetProblem(problem, "the property list holds a value of an unsupported type (UID)");
      return false;
    case PLIST_NONE:
      break;
  }
  SetProblem(problem, kNotAPropertyList);
  return false;
}

}  // namespace

bool APropertyList::Parse(std::string_view data, AValue& out, AQVString* problem) {
  if (data.size() >= 3 && data.substr(0, 3) == "\xEF\xBB\xBF") data.remove_prefix(3);
  if (data.empty() || data.size() > std::numeric_limits<std::uint32_t>::max()) {
    SetProblem(problem, kNotAPropertyList);
    return false;
  }
  const bool binary = data.substr(0, kBinaryMagic.size()) == kBinaryMagic;
  // Plain XML, by far the common case, is read in one pass; the rest takes
  // the checked libplist path below.
  if (!binary && AXMLPropertyListReader::Read(data, out)) return true;
  if (binary ? !BinaryScan(data).Check(problem) : !CheckXMLNesting(data, problem)) return false;
  std::string unavailable;
  const APlistLibrary* plist = APlistLibrary::Get(&unavailable);
  if (plist == nullptr) {
    SetProblem(problem, AQVString(unavailable));
    return false;
  }
  plist_t root = nullptr;
  if (binary) {
    plist->fromBinary(data.data(), static_cast<std::uint32_t>(data.size()), &root);
  } else {
    plist->fromXML(data.data(), static_cast<std::uint32_t>(data.size()), &root);
  }
  const PlistOwner owner(*plist, root, true);
  if (root == nullptr) {
    SetProblem(problem, kNotAPropertyList);
    return false;
  }
  AValue value;
  if (!Convert(*plist, root, 0, value, problem)) return false;
  out = std::move(value);
  return true;
}

bool APropertyList::ParseFile(const std::filesystem::path& path, AValue& out, AQVString* problem) {
  std::string bytes;
  if (!ReadFileBytes(path, bytes)) {
    SetProblem(problem, AQVString("cannot read file \"") + AQVString(path.string()) + "\"");
    return false;
  }
  AQVString reason;
  if (!Parse(bytes, out, &reason)) {
    SetProblem(problem, AQVString("file \"") + AQVString(path.string()) + "\": " + reason);
    return false;
  }
  return true;
}

bool ReadFileBytes(const std::filesystem::path& path, std::string& out) {
  const int descriptor = ::open(path.c_str(), O_RDONLY | O_CLOEXEC);
  if (descriptor < 0) return false;
  struct FileCloser {
    int descriptor;
    ~FileCloser() { ::close(descriptor); }
  } closer{descriptor};
  struct stat status {};
  if (::fstat(descriptor, &status) != 0 || !S_ISREG(status.st_mode)) return false;
  // Read in one go into a buffer of the file's size: no regrowth, and no
  // more memory touched than the file holds. A file that grows meanwhile is
  // read to its end all the same.
  std::string bytes(static_cast<std::size_t>(status.st_size) + 1, '\0');
  std::size_t length = 0;
  for (;;) {
    if (length == bytes.size()) bytes.resize(bytes.size() * 2);
    const ssize_t count = ::read(descriptor, bytes.data() + length, bytes.size() - length);
    if (count < 0) {
      if (errno == EINTR) continue;
      return false;
    }
    if (count == 0) break;
    length += static_cast<std::size_t>(count);
  }
  bytes.resize(length);
  out = std::move(bytes);
  return true;
}

}  // namespace com_qv_print_driver_core_cpp_util_v1
