#include "core/ADictionary.h"

#include <algorithm>
#include <string_view>

#include "core/APropertyList.h"

namespace com_qv_print_driver_core_cpp_util_v1 {

namespace {

// Every empty dictionary shares one storage until it is first written to.
const std::shared_ptr<const ADictionaryStorage>& EmptyStorage() {
  static const std::shared_ptr<const ADictionaryStorage> empty =
      std::make_shared<const ADictionaryStorage>();
  return empty;
}

using Entry = std::pair<AQVString, AValue>;

bool KeyLess(const Entry& entry, std::string_view key) { return std::string_view(entry.first.UTF8()) < key; }

// Up to this many entries a scan that compares sizes first is quicker than
// a binary search: keys of one dictionary often share long prefixes
// ("paperRectTop", "paperRectLeft") but rarely a size.
constexpr std::size_t kScanUpTo = 16;

// The entry of `key` in sorted `items`, or null.
const Entry* Find(const ADictionary::Items& items, std::string_view key) {
  if (items.size() <= kScanUpTo) {
    for (const Entry& entry : items) {
      const std::string& have = entry.first.UTF8();
      if (have.size() == key.size() && std::string_view(have) == key) return &entry;
    }
    return nullptr;
  }
  const auto found = std::lower_bound(items.begin(), items.end(), key, KeyLess);
  return found != items.end() && std::string_view(found->first.UTF8()) == key ? &*found : nullptr;
}

}  // namespace

ADictionary::ADictionary() : storage_(EmptyStorage()) {}

ADictionary::ADictionary(std::shared_ptr<const ADictionaryStorage> storage) : storage_(std::move(storage)) {}

ADictionary ADictionary::FromItems(Items items) {
  if (items.empty()) return ADictionary();
  const auto byKey = [](const Entry& a, const Entry& b) { return a.first < b.first; };
  // Writers usually emit keys sorted; anything else is sorted here, keeping
  // the last entry of a repeated key.
  if (std::adjacent_find(items.begin(), items.end(), [](const Entry& a, const Entry& b) {
        return !(a.first < b.first);
      }) != items.end()) {
    std::stable_sort(items.begin(), items.end(), byKey);
    auto out = items.begin();
    for (auto in = items.begin(); in != items.end(); ++in) {
      if (std::next(in) != items.end() && !(in->first < std::next(in)->first)) continue;
      if (out != in) *out = std::move(*in);
      ++out;
    }
    items.erase(out, items.end());
  }
  return ADictionary(std::make_shared<const ADictionaryStorage>(ADictionaryStorage{std::move(items)}));
}

ADictionaryStorage& ADictionary::Mutable() {
  if (storage_.use_count() != 1) storage_ = std::make_shared<const ADictionaryStorage>(*storage_);
  // The storage is owned by this dictionary alone now, so writing to it is safe.
  return const_cast<ADictionaryStorage&>(*storage_);
}

std::optional<ADictionary> ADictionary::FromXML(std::string_view data) {
  AValue root;
  ADictionary dictionary;
  if (!APropertyList::Parse(data, root) || !root.GetDictionary(dictionary)) return std::nullopt;
  return dictionary;
}

// The readings shared by both kinds of key, on the value found (or null).
namespace {

bool StringOf(const AValue* value, AQVString& out) {
  const AQVString* text = value == nullptr ? nullptr : value->AsString();
  out = text == nullptr ? AQVString() : *text;
  return text != nullptr;
}

AQVString StringOf(const AValue* value) {
  AQVString text;
  StringOf(value, text);
  return text;
}

bool ArrayOf(const AValue* value, AArray& out) { return value != nullptr && value->GetArray(out); }

bool DictionaryOf(const AValue* value, ADictionary& out) { return value != nullptr && value->GetDictionary(out); }

}  // namespace

bool ADictionary::Contains(const AQVString& key) const { return Get(key) != nullptr; }

const AValue* ADictionary::Get(const AQVString& key) const {
  const Entry* found = Find(storage_->items, key.UTF8());
  return found == nullptr ? nullptr : &found->second;
}

bool ADictionary::GetString(const AQVString& key, AQVString& out) const { return StringOf(Get(key), out); }
AQVString ADictionary::GetString(const AQVString& key) const { return StringOf(Get(key)); }
bool ADictionary::GetArray(const AQVString& key, AArray& out) const { return ArrayOf(Get(key), out); }
bool ADictionary::GetDictionary(const AQVString& key, ADictionary& out) const { return DictionaryOf(Get(key), out); }

bool ADictionary::Contains(const char* key) const { return Get(key) != nullptr; }

const AValue* ADictionary::Get(const char* key) const {
  const Entry* found = Find(storage_->items, key);
  return found == nullptr ? nullptr : &found->second;
}

bool ADictionary::GetString(const char* key, AQVString& out) const { return StringOf(Get(key), out); }
AQVString ADictionary::GetString(const char* key) const { return StringOf(Get(key)); }
bool ADictionary::GetArray(const char* key, AArray& out) const { return ArrayOf(Get(key), out); }
bool ADictionary::GetDictionary(const char* key, ADictionary& out) const { return DictionaryOf(Get(key), out); }

void ADictionary::Set(const AQVString& key, const AValue& value) {
  // `key` or `value` may live inside this dictionary's storage; copy them first.
  AQVString keyCopy = key;
  AValue valueCopy = value;
  Items& items = Mutable().items;
  const auto at = std::lower_bound(items.begin(), items.end(), std::string_view(keyCopy.UTF8()), KeyLess);
  if (at != items.end() && at->first == keyCopy) {
    at->second = std::move(valueCopy);
  } else {
    items.emplace(at, std::move(keyCopy), std::move(valueCopy));
  }
}

void ADictionary::Remove(const AQVString& key) {
  if (!Contains(key)) return;
  AQVString keyCopy = key;
  Items& items = Mutable().items;
  items.erase(std::lower_bound(items.begin(), items.end(), std::string_view(keyCopy.UTF8()), KeyLess));
}

bool operator==(const ADictionary& a, const ADictionary& b) {
  return a.storage_ == b.storage_ || a.storage_->items == b.storage_->items;
}

}  // namespace com_qv_print_driver_core_cpp_util_v1
