#pragma once
// A property-list dictionary from string keys to values, kept in key order
// (so iteration is deterministic), shared and copied on write. The entries
// lie in one sorted array: a product holds thousands of small dictionaries,
// read far more often than changed.

#include <cstddef>
#include <utility>
#include <vector>
#include <memory>
#include <optional>
#include <string_view>

#include "core/AArray.h"
#include "core/AValue.h"

namespace com_qv_print_driver_core_cpp_util_v1 {

struct ADictionaryStorage {
  // Sorted by key; no key twice.
  std::vector<std::pair<AQVString, AValue>> items;
};

class ADictionary {
 public:
  ADictionary();

  using Items = std::vector<std::pair<AQVString, AValue>>;
  // A dictionary that takes over `items` (in any order) without copying
  // them; of entries with the same key the last one counts.
  static ADictionary FromItems(Items items);

  // Parses property-list data (XML or binary). Nothing when the data is not
  // a property list or its root is not a dictionary.
  static std::optional<ADictionary> FromXML(std::string_view data);

  std::size_t Count() const { return storage_->items.size(); }
  bool IsEmpty() const { return storage_->items.empty(); }
  bool Contains(const AQVString& key) const;
  // The value under `key` (borrowed, valid until this dictionary changes), or null.
  const AValue* Get(const AQVString& key) const;
  // `out` gets the string under `key` and true; absent or not a string:
  // `out` is left empty and false is returned.
  bool GetString(const AQVString& key, AQVString& out) const;
  // The string under `key`, or an empty string.
  AQVString GetString(const AQVString& key) const;
  // Copies of the containers under `key`; false when absent or of another type.
  bool GetArray(const AQVString& key, AArray& out) const;
  bool GetDictionary(const AQVString& key, ADictionary& out) const;
  // The same lookups for keys given as C strings (the library's key
  // constants), without making an AQVString of the key.
  bool Contains(const char* key) const;
  const AValue* Get(const char* key) const;
  bool GetString(const char* key, AQVString& out) const;
  AQVString GetString(const char* key) const;
  bool GetArray(const char* key, AArray& out) const;
  bool GetDictionary(const char* key, ADictionary& out) const;

  // Adds or replaces the entry of `key` (linear in the count: build large
  // dictionaries with FromItems).
  void Set(const AQVString& key, const AValue& value);
  void Remove(const AQVString& key);

  using const_iterator = Items::const_iterator;
  const_iterator begin() const { return storage_->items.begin(); }
  const_iterator end() const { return storage_->items.end(); }

  friend bool operator==(const ADictionary& a, const ADictionary& b);

 private:
  friend class AValue;
  explicit ADictionary(std::shared_ptr<const ADictionaryStorage> storage);
  ADictionaryStorage& Mutable();
  std::shared_ptr<const ADictionaryStorage> storage_;
};

}  // namespace com_qv_print_driver_core_cpp_util_v1

namespace ppdforge {
using com_qv_print_driver_core_cpp_util_v1::ADictionary;
}
