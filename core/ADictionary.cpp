#include "core/ADictionary.h"

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

// A C-string key measured once, so that the search compares lengths and
// bytes only (the map's std::less<> finds these operators by argument-
// dependent lookup).
struct KeyView {
  std::string_view text;
};
bool operator<(const AQVString& a, const KeyView& b) { return std::string_view(a.UTF8()) < b.text; }
bool operator<(const KeyView& a, const AQVString& b) { return a.text < std::string_view(b.UTF8()); }

}  // namespace

ADictionary::ADictionary() : storage_(EmptyStorage()) {}

ADictionary::ADictionary(std::shared_ptr<const ADictionaryStorage> storage) : storage_(std::move(storage)) {}

ADictionary ADictionary::FromItems(Items items) {
  if (items.empty()) return ADictionary();
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

bool ADictionary::Contains(const AQVString& key) const {
  return storage_->items.find(key) != storage_->items.end();
}

const AValue* ADictionary::Get(const AQVString& key) const {
  const auto found = storage_->items.find(key);
  return found == storage_->items.end() ? nullptr : &found->second;
}

bool ADictionary::GetString(const AQVString& key, AQVString& out) const {
  out = AQVString();
  const AValue* value = Get(key);
  const AQVString* text = value == nullptr ? nullptr : value->AsString();
  if (text == nullptr) return false;
  out = *text;
  return true;
}

AQVString ADictionary::GetString(const AQVString& key) const {
  AQVString text;
  GetString(key, text);
  return text;
}

bool ADictionary::GetArray(const AQVString& key, AArray& out) const {
  const AValue* value = Get(key);
  return value != nullptr && value->GetArray(out);
}

bool ADictionary::GetDictionary(const AQVString& key, ADictionary& out) const {
  const AValue* value = Get(key);
  return value != nullptr && value->GetDictionary(out);
}

bool ADictionary::Contains(const char* key) const {
  return storage_->items.find(KeyView{key}) != storage_->items.end();
}

const AValue* ADictionary::Get(const char* key) const {
  const auto found = storage_->items.find(KeyView{key});
  return found == storage_->items.end() ? nullptr : &found->second;
}

bool ADictionary::GetString(const char* key, AQVString& out) const {
  out = AQVString();
  const AValue* value = Get(key);
  const AQVString* text = value == nullptr ? nullptr : value->AsString();
  if (text == nullptr) return false;
  out = *text;
  return true;
}

AQVString ADictionary::GetString(const char* key) const {
  AQVString text;
  GetString(key, text);
  return text;
}

bool ADictionary::GetArray(const char* key, AArray& out) const {
  const AValue* value = Get(key);
  return value != nullptr && value->GetArray(out);
}

bool ADictionary::GetDictionary(const char* key, ADictionary& out) const {
  const AValue* value = Get(key);
  return value != nullptr && value->GetDictionary(out);
}

void ADictionary::Set(const AQVString& key, const AValue& value) {
  // `key` or `value` may live inside this dictionary's storage; copy them first.
  AQVString keyCopy = key;
  AValue valueCopy = value;
  Mutable().items.insert_or_assign(std::move(keyCopy), std::move(valueCopy));
}

void ADictionary::Remove(const AQVString& key) {
  if (!Contains(key)) return;
  AQVString keyCopy = key;
  Mutable().items.erase(keyCopy);
}

bool operator==(const ADictionary& a, const ADictionary& b) {
  return a.storage_ == b.storage_ || a.storage_->items == b.storage_->items;
}

}  // namespace com_qv_print_driver_core_cpp_util_v1
