#include "facade/APlistProductInfo.h"

#include <algorithm>
#include <cstddef>
#include <string>
#include <string_view>
#include <system_error>
#include <utility>
#include <vector>

#include "core/AFormatter.h"
#include "core/APropertyList.h"
#include "core/AWorkerPool.h"
#include "core/RKPPDMessages.h"

namespace ppdforge {

namespace {

// What a key may hold. Numbers are integers or reals; a flag is what
// Foundation reads with boolValue from a number or a boolean.
enum class Kind {
  kAny,
  kString,
  kInteger,
  kNumber,
  kBoolean,
  kFlag,
  kNumberOrString,
  kBooleanOrString,
  kFlagOrString,
  kArray,
  kDictionary,
};

struct Shape;

struct Member {
  Member(const char* memberKey, const Shape* memberShape, bool isRequired = false)
      : key(memberKey), shape(memberShape), required(isRequired) {}
  const char* key;
  const Shape* shape;
  bool required;
};

// The expected form of one value; containers describe their contents.
struct Shape {
  Kind kind = Kind::kAny;
  // Arrays: the shape of every element. Dictionaries: the shape of every
  // value whose key is not a member.
  const Shape* element = nullptr;
  // Dictionaries: the known keys, and their names for the lookup.
  std::vector<Member> members;
  std::vector<std::string_view> memberNames;
  // Arrays: the exact number of elements, when not 0.
  std::size_t count = 0;
  // Dictionaries: "option-N" and "choice-N" hold strings.
  bool numberedKeys = false;
};

Shape Leaf(Kind kind) {
  Shape shape;
  shape.kind = kind;
  return shape;
}

Shape ArrayOf(const Shape* element, std::size_t count = 0) {
  Shape shape;
  shape.kind = Kind::kArray;
  shape.element = element;
  shape.count = count;
  return shape;
}

// A dictionary with known keys (and, when `numberedKeys`, "option-N" and
// "choice-N" strings).
Shape Record(std::vector<Member> members, bool numberedKeys = false) {
  Shape shape;
  shape.kind = Kind::kDictionary;
  shape.members = std::move(members);
  for (const Member& member : shape.members) shape.memberNames.emplace_back(member.key);
  shape.numberedKeys = numberedKeys;
  return shape;
}

// A dictionary whose every value has the shape `element`.
Shape MapOf(const Shape* element) {
  Shape shape;
  shape.kind = Kind::kDictionary;
  shape.element = element;
  return shape;
}

bool Matches(const AValue& value, Kind kind) {
  switch (kind) {
    case Kind::kAny: return true;
    case Kind::kString: return value.IsString();
    case Kind::kInteger: return value.GetType() == AValue::Type::kInteger;
    case Kind::kNumber: return value.IsNumber();
    case Kind::kBoolean: return value.IsBoolean();
    case Kind::kFlag: return value.IsBoolean() || value.IsNumber();
    case Kind::kNumberOrString: return value.IsNumber() || value.IsString();
    case Kind::kBooleanOrString: return value.IsBoolean() || value.IsString();
    case Kind::kFlagOrString: return value.IsBoolean() || value.IsNumber() || value.IsString();
    case Kind::kArray: return value.IsArray();
    case Kind::kDictionary: return value.IsDictionary();
  }
  return false;
}

const char* Expected(const Shape& shape) {
  switch (shape.kind) {
    case Kind::kAny: return "any value";
    case Kind::kString: return "a string";
    case Kind::kInteger: return "an integer";
    case Kind::kNumber: return "a number";
    case Kind::kBoolean: return "a boolean";
    case Kind::kFlag: return "a boolean or a number";
    case Kind::kNumberOrString: return "a number or a string";
    case Kind::kBooleanOrString: return "a boolean or a string";
    case Kind::kFlagOrString: return "a boolean, a number or a string";
    case Kind::kArray:
      if (shape.element == nullptr) return "an array";
      switch (shape.element->kind) {
        case Kind::kString: return "an array of strings";
        case Kind::kNumber: return "an array of numbers";
        case Kind::kDictionary: return "an array of dictionaries";
        case Kind::kArray: return "an array of arrays";
        default: return "an array";
      }
    case Kind::kDictionary: return "a dictionary";
  }
  return "";
}

const char* Found(const AValue& value) {
  switch (value.GetType()) {
    case AValue::Type::kNull: return "a null value";
    case AValue::Type::kBoolean: return "a boolean";
    case AValue::Type::kInteger: return "an integer";
    case AValue::Type::kReal: return "a real number";
    case AValue::Type::kString: return "a string";
    case AValue::Type::kData: return "data";
    case AValue::Type::kDate: return "a date";
    case AValue::Type::kArray: return "an array";
    case AValue::Type::kDictionary: return "a dictionary";
  }
  return "";
}

AQVString MemberPath(const AQVString& path, const AQVString& key) {
  return path.IsEmpty() ? key : path + "." + key;
}

AQVString ElementPath(const AQVString& path, std::size_t index) {
  return path + "[" + AQVString::FromInteger(static_cast<long long>(index)) + "]";
}

// "option-N" or "choice-N" with N one or more decimal digits.
bool IsNumberedKey(const AQVString& key) {
  const std::string& text = key.UTF8();
  std::size_t digits = 0;
  if (text.rfind("option-", 0) == 0) {
    digits = 7;
  } else if (text.rfind("choice-", 0) == 0) {
    digits = 7;
  } else {
    return false;
  }
  if (digits == text.size()) return false;
  for (std::size_t i = digits; i < text.size(); ++i) {
    if (text[i] < '0' || text[i] > '9') return false;
  }
  return true;
}

// The shapes of every known key. Built once; members point at shapes
// defined before them.
struct Shapes {
  Shape any = Leaf(Kind::kAny);
  Shape string = Leaf(Kind::kString);
  Shape integer = Leaf(Kind::kInteger);
  Shape number = Leaf(Kind::kNumber);
  Shape boolean = Leaf(Kind::kBoolean);
  Shape flag = Leaf(Kind::kFlag);
  Shape numberOrString = Leaf(Kind::kNumberOrString);
  Shape booleanOrString = Leaf(Kind::kBooleanOrString);
  Shape flagOrString = Leaf(Kind::kFlagOrString);
  Shape strings = ArrayOf(&string);
  Shape stringPair = ArrayOf(&string, 2);
  Shape stringPairs = ArrayOf(&stringPair);
  Shape fourNumbers = ArrayOf(&number, 4);

  // An attribute description (also the product's pre-filter attributes).
  Shape attribute = Record({{"generator", &string}, {"comment", &string}, {"name", &string},
                   {"spec", &string}, {"translation", &string}, {"value", &string},
                   {"value-type", &numberOrString}});
  Shape attributes = ArrayOf(&attribute);

  Shape choice = Record({{"id", &string}, {"name", &string}, {"code", &string}, {"comment", &string}});
  Shape choices = ArrayOf(&choice);
  Shape option = Record({{"generator", &string}, {"comment", &string}, {"code-name", &string},
                {"user-name", &string}, {"group-name", &string}, {"setting-name", &string},
                {"min-value-count", &numberOrString}, {"ui-type", &numberOrString},
                {"choices", &choices}, {"choice-generic-code", &string},
                {"default-choice", &string}});
  Shape options = ArrayOf(&option);

  Shape resolver = Record({{"generator", &string}, {"comment", &string}, {"resolver-name", &string}}, true);
  Shape resolvers = ArrayOf(&resolver);

  Shape constraint = Record({{"generator", &string}, {"comment", &string}, {"non-ui", &booleanOrString},
                    {"cupsUIConstraint", &flagOrString}, {"resolver", &string}}, true);
  Shape constraints = ArrayOf(&constraint);

  // One value of a product setting: a media size of "QVPaperInfo", a media
  // type, a resolution, a colour model ...
  Shape settingValue = Record({{"name", &string}, {"userName", &string}, {"PPDName", &string},
                      {"mediaSizeCategory", &string}, {"isCustomMediaSize", &flag},
                      {"supportsFullBleed", &flag}, {"oversprayScaleFactor", &number},
                      {"paperRectTop", &number}, {"paperRectLeft", &number},
                      {"paperRectBottom", &number}, {"paperRectRight", &number},
                      {"pageRectTop", &number}, {"pageRectLeft", &number},
                      {"pageRectBottom", &number}, {"pageRectRight", &number},
                      {"cupsColorOrder", &number}, {"cupsColorSpace", &number},
                      {"cupsBitsPerColor", &number}, {"horizontalResolutionValue", &number},
                      {"verticalResolutionValue", &number}, {"defaultQuality", &string}});
  Shape settingValues = ArrayOf(&settingValue);
  Shape setting = Record({{"userName", &string}, {"defaultChoice", &string}, {"values", &settingValues},
                 {"enabled", &flag}, {"PDFPreFilterAttributes", &attributes}});
  Shape settings = MapOf(&setting);

  Shape features = MapOf(&any);

  Shape colorProfile = Record({{"name", &string, true}, {"path", &string, true}, {"userName", &string},
                      {"colorModel", &string}, {"mediaType", &string},
                      {"resolution", &string}, {"default", &boolean}});
  Shape colorProfiles = ArrayOf(&colorProfile);

  Shape components = MapOf(&string);
  Shape duplex = Record({{"backSide", &string}, {"requiresFlippedMargin", &boolean}});
  Shape marker = Record({{"name", &string}, {"userName", &string}});
  Shape markers = ArrayOf(&marker);
  Shape ippReason = Record({{"reason", &string}, {"message", &string}, {"value", &string}});
  Shape ippReasons = ArrayOf(&ippReason);
  Shape preset = Record({{"name", &string}, {"userName", &string}, {"settings", &stringPairs},
                {"presetValues", &stringPairs}});
  Shape presets = ArrayOf(&preset);
  Shape product = Record({{"manufacturer", &string}, {"modelName", &string}, {"nickName", &string},
                 {"shortNickName", &string}, {"version", &string}, {"iconPath", &string},
                 {"outputOrder", &string}, {"markerNotice", &string},
                 {"productNames", &strings}, {"components", &components},
                 {"duplex", &duplex}, {"markers", &markers}, {"ippReasons", &ippReasons},
                 {"presets", &presets}, {"preFilterAttributes", &attributes}});

  Shape excludes = MapOf(&strings);

  // The root's known keys.
  std::vector<Member> root{
      {"attributesGenerationInfo", &attributes},
      {"optionsGenerationInfo", &options},
      {"cupsUIResolversGenerationInfo", &resolvers},
      {"constraintsGenerationInfo", &constraints},
      {"CUPSVersion", &integer},
      {"options", &settings},
      {"features", &features},
      {"customPageSizeMargins", &fourNumbers},
      {"customPageSizeConstraints", &fourNumbers},
      {"colorProfiles", &colorProfiles},
      {"product", &product},
      {"customPageSizeExcludes", &excludes},
  };
};

const Shapes& KnownShapes() {
  static const Shapes shapes;
  return shapes;
}

// Where a value stands in the description ("options.QVPaperInfo.values[3]"),
// as a chain through the caller's frames; the text is made only for an error.
struct Path {
  const Path* parent = nullptr;
  std::string_view key;  // unused for an element of an array
  bool element = false;
  std::size_t index = 0;

  AQVString Text() const {
    if (parent == nullptr) return AQVString(key);
    const AQVString above = parent->Text();
    return element ? ElementPath(above, index) : MemberPath(above, AQVString(key));
  }
};

// The index of `key` among the members of `shape`, or npos.
std::size_t MemberIndex(const Shape& shape, std::string_view key) {
  for (std::size_t i = 0; i < shape.memberNames.size(); ++i) {
    if (key == shape.memberNames[i]) return i;
  }
  return static_cast<std::size_t>(-1);
}

// Walks a description against its shapes; the first problem ends the walk
// with an input error naming the source and the key path.
class Checker {
 public:
  Checker(const AQVString& source, AError* error) : source_(source), error_(error) {}

  bool Check(const AValue& value, const Shape& shape, const AQVString& path) const {
    const Path root{nullptr, path.UTF8(), false, 0};
    return Check(value, shape, root);
  }

 private:
  bool Check(const AValue& value, const Shape& shape, const Path& path) const {
    if (!Matches(value, shape.kind)) {
      return messages::Report(error_, messages::kProductWrongType,
                              {source_, path.Text(), AQVString(Found(value)), AQVString(Expected(shape))});
    }
    if (shape.kind == Kind::kArray) {
      AArray array;
      value.GetArray(array);
      if (shape.count != 0 && array.Count() != shape.count) {
        return messages::Report(error_, messages::kProductWrongCount,
                                {source_, path.Text(), static_cast<long long>(array.Count()),
                                 static_cast<long long>(shape.count)});
      }
      if (shape.element == nullptr) return true;
      for (std::size_t i = 0; i < array.Count(); ++i) {
        const Path element{&path, std::string_view(), true, i};
        if (!Check(array[i], *shape.element, element)) return false;
      }
      return true;
    }
    if (shape.kind == Kind::kDictionary) {
      ADictionary dictionary;
      value.GetDictionary(dictionary);
      return CheckDictionary(dictionary, shape, path);
    }
    return true;
  }

  // Members in their declared order first, then the other keys in key
  // order; one pass over the dictionary finds the members.
  bool CheckDictionary(const ADictionary& dictionary, const Shape& shape, const Path& path) const {
    constexpr std::size_t kNone = static_cast<std::size_t>(-1);
    // Shapes have a few dozen members at most; larger ones use the heap.
    constexpr std::size_t kLocalMembers = 32;
    const AValue* local[kLocalMembers];
    std::vector<const AValue*> heap;
    const AValue** found = local;
    if (shape.members.size() > kLocalMembers) {
      heap.resize(shape.members.size());
      found = heap.data();
    }
    std::fill(found, found + shape.members.size(), nullptr);
    std::size_t others = 0;
    for (const auto& [key, value] : dictionary) {
      const std::size_t index = MemberIndex(shape, key.UTF8());
      if (index != kNone) {
        found[index] = &value;
      } else {
        ++others;
      }
    }
    for (std::size_t i = 0; i < shape.members.size(); ++i) {
      const Member& member = shape.members[i];
      if (found[i] == nullptr) {
        if (member.required) {
          return messages::Report(error_, messages::kProductMissingKey,
                                  {source_, path.Text(), AQVString(member.key)});
        }
        continue;
      }
      const Path child{&path, shape.memberNames[i], false, 0};
      if (!Check(*found[i], *member.shape, child)) return false;
    }
    if (others == 0 || (shape.element == nullptr && !shape.numberedKeys)) return true;
    const Shapes& shapes = KnownShapes();
    for (const auto& [key, value] : dictionary) {
      if (MemberIndex(shape, key.UTF8()) != kNone) continue;
      const Path child{&path, key.UTF8(), false, 0};
      if (shape.numberedKeys && IsNumberedKey(key)) {
        if (!Check(value, shapes.string, child)) return false;
      } else if (shape.element != nullptr) {
        if (!Check(value, *shape.element, child)) return false;
      }
    }
    return true;
  }

  AQVString source_;
  AError* error_;
};

}  // namespace

APlistProductInfo::APlistProductInfo(ADictionary root, AQVString sourceName,
                                     std::vector<AQVString> warnings)
    : root_(std::move(root)), sourceName_(std::move(sourceName)), warnings_(std::move(warnings)) {}

std::shared_ptr<APlistProductInfo> APlistProductInfo::LoadFile(const std::filesystem::path& path,
                                                               AError* error) {
  const AQVString source(path.string());
  std::string bytes;
  if (!ReadFileBytes(path, bytes)) {
    // A folder on the way that may not be searched hides whether the file
    // exists: that is a file that cannot be read, not a missing one.
    std::error_code ignored;
    const std::filesystem::file_type type = std::filesystem::status(path, ignored).type();
    const char* reason = messages::kProductFileNotReadable;
    if (type == std::filesystem::file_type::not_found) {
      reason = messages::kProductFileMissing;
    } else if (type == std::filesystem::file_type::directory) {
      reason = messages::kProductFileIsDirectory;
    }
    messages::Report(error, messages::kProductFileUnreadable, {source, AQVString(reason)});
    return nullptr;
  }
  AValue value;
  AQVString problem;
  if (!APropertyList::Parse(bytes, value, &problem)) {
    messages::Report(error, messages::kProductFileUnreadable, {source, problem});
    return nullptr;
  }
  ADictionary root;
  if (!value.GetDictionary(root)) {
    messages::Report(error, messages::kProductRootNotDictionary, {source, AQVString(Found(value))});
    return nullptr;
  }
  return FromDictionary(root, source, error);
}

std::shared_ptr<APlistProductInfo> APlistProductInfo::FromDictionary(const ADictionary& root,
                                                                     const AQVString& sourceName,
                                                                     AError* error) {
  const Shapes& shapes = KnownShapes();
  struct Pending {
    const AQVString* key;
    const AValue* value;
    const Shape* shape;
    AError error;
    bool good = true;
  };
  std::vector<Pending> pending;
  std::vector<AQVString> warnings;
  for (const auto& [key, value] : root) {
    const Member* known = nullptr;
    for (const Member& member : shapes.root) {
      if (key == member.key) {
        known = &member;
        break;
      }
    }
    if (known == nullptr) {
      warnings.push_back(
          AFormatter::FormatTrusted(messages::kProductUnknownKeyWarning, {sourceName, key}));
      continue;
    }
    pending.push_back({&key, &value, known->shape, AError(), true});
  }
  // The members are checked side by side when the process has helpers; the
  // first problem in key order is the one reported, as in a single walk.
  AWorkerPool& pool = AWorkerPool::Shared();
  pool.ForEach(pending.size(), pool.Threads(), [&](std::size_t i) {
    Pending& member = pending[i];
    member.good = Checker(sourceName, &member.error).Check(*member.value, *member.shape, *member.key);
  });
  for (Pending& member : pending) {
    if (member.good) continue;
    if (error != nullptr) *error = std::move(member.error);
    return nullptr;
  }
  return std::shared_ptr<APlistProductInfo>(
      new APlistProductInfo(root, sourceName, std::move(warnings)));
}

std::optional<AArray> APlistProductInfo::ArrayForKey(const char* key) const {
  AArray array;
  if (root_.GetArray(key, array)) return array;
  return std::nullopt;
}

std::optional<ADictionary> APlistProductInfo::DictionaryForKey(const char* key) const {
  ADictionary dictionary;
  if (root_.GetDictionary(key, dictionary)) return dictionary;
  return std::nullopt;
}

ARKMediaSizeRect APlistProductInfo::RectForKey(const char* key) const {
  AArray numbers;
  if (!root_.GetArray(key, numbers) || numbers.Count() != 4) return {};
  return RKMediaSizeRectMake(numbers[0].DoubleValue(), numbers[1].DoubleValue(),
                             numbers[2].DoubleValue(), numbers[3].DoubleValue());
}

std::optional<AArray> APlistProductInfo::AttributesGenerationInfo() const {
  return ArrayForKey("attributesGenerationInfo");
}

std::optional<AArray> APlistProductInfo::OptionsGenerationInfo() const {
  return ArrayForKey("optionsGenerationInfo");
}

std::optional<AArray> APlistProductInfo::CUPSUIResolversGenerationInfo() const {
  return ArrayForKey("cupsUIResolversGenerationInfo");
}

std::optional<AArray> APlistProductInfo::ConstraintsGenerationInfo() const {
  return ArrayForKey("constraintsGenerationInfo");
}

long APlistProductInfo::CUPSVersion() const {
  const AValue* version = root_.Get("CUPSVersion");
  return version != nullptr ? static_cast<long>(version->IntegerValue()) : 0;
}

std::optional<ADictionary> APlistProductInfo::InfoForOptionWithName(const AQVString& name) const {
  ADictionary settings;
  ADictionary setting;
  if (root_.GetDictionary("options", settings) && settings.GetDictionary(name, setting)) {
    return setting;
  }
  return std::nullopt;
}

AValue APlistProductInfo::ProductFeatureForKey(const AQVString& key) const {
  ADictionary features;
  if (!root_.GetDictionary("features", features)) return {};
  const AValue* feature = features.Get(key);
  return feature != nullptr ? *feature : AValue();
}

ARKMediaSizeRect APlistProductInfo::CustomPageSizeMargins() const {
  return RectForKey("customPageSizeMargins");
}

ARKMediaSizeRect APlistProductInfo::CustomPageSizeConstraints() const {
  return RectForKey("customPageSizeConstraints");
}

std::optional<AArray> APlistProductInfo::ColorProfiles() const {
  return ArrayForKey("colorProfiles");
}

std::optional<ADictionary> APlistProductInfo::ProductData() const {
  return DictionaryForKey("product");
}

std::optional<ADictionary> APlistProductInfo::CustomPageSizeExcludes() const {
  return DictionaryForKey("customPageSizeExcludes");
}

}  // namespace ppdforge
