#pragma once
// An ordered list of property-list values, shared and copied on write.

#include <cstddef>
#include <initializer_list>
#include <memory>
#include <vector>

#include "core/AValue.h"

namespace com_qv_print_driver_core_cpp_util_v1 {

struct AArrayStorage {
  std::vector<AValue> items;
};

class AArray {
 public:
  AArray();
  AArray(std::initializer_list<AValue> items);
  // An array that takes over `items` without copying them.
  static AArray FromValues(std::vector<AValue> items);

  std::size_t Count() const { return storage_->items.size(); }
  bool IsEmpty() const { return storage_->items.empty(); }
  // The element at `index`; index must be below Count().
  const AValue& At(std::size_t index) const { return storage_->items[index]; }
  const AValue& operator[](std::size_t index) const { return storage_->items[index]; }
  // The string at `index`, or an empty string past the end or for another type.
  AQVString GetStringAt(std::size_t index) const;

  void Append(const AValue& value);
  // Sets the element at `index`; past the end the array is first padded with
  // null values.
  void Set(std::size_t index, const AValue& value);
  void RemoveAt(std::size_t index);
  void Clear();

  std::vector<AValue>::const_iterator begin() const { return storage_->items.begin(); }
  std::vector<AValue>::const_iterator end() const { return storage_->items.end(); }

  friend bool operator==(const AArray& a, const AArray& b);

 private:
  friend class AValue;
  explicit AArray(std::shared_ptr<const AArrayStorage> storage);
  AArrayStorage& Mutable();
  std::shared_ptr<const AArrayStorage> storage_;
};

}  // namespace com_qv_print_driver_core_cpp_util_v1

namespace ppdforge {
using com_qv_print_driver_core_cpp_util_v1::AArray;
}
