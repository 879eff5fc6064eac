#include "core/AArray.h"

namespace com_qv_print_driver_core_cpp_util_v1 {

namespace {

// Every empty array shares one storage until it is first written to.
const std::shared_ptr<const AArrayStorage>& EmptyStorage() {
  static const std::shared_ptr<const AArrayStorage> empty = std::make_shared<const AArrayStorage>();
  return empty;
}

}  // namespace

AArray::AArray() : storage_(EmptyStorage()) {}

AArray::AArray(std::initializer_list<AValue> items)
    : storage_(std::make_shared<const AArrayStorage>(AArrayStorage{std::vector<AValue>(items)})) {}

AArray::AArray(std::shared_ptr<const AArrayStorage> storage) : storage_(std::move(storage)) {}

AArray AArray::FromValues(std::vector<AValue> items) {
  if (items.empty()) return AArray();
  return AArray(std::make_shared<const AArrayStorage>(AArrayStorage{std::move(items)}));
}

AArrayStorage& AArray::Mutable() {
  if (storage_.use_count() != 1) storage_ = std::make_shared<const AArrayStorage>(*storage_);
  // The storage is owned by this array alone now, so writing to it is safe.
  return const_cast<AArrayStorage&>(*storage_);
}

AQVString AArray::GetStringAt(std::size_t index) const {
  if (index >= Count()) return AQVString();
  const AQVString* text = storage_->items[index].AsString();
  return text == nullptr ? AQVString() : *text;
}

void AArray::Append(const AValue& value) {
  // `value` may live inside this array's storage; copy it before the storage moves.
  AValue copy = value;
  Mutable().items.push_back(std::move(copy));
}

void AArray::Set(std::size_t index, const AValue& value) {
  AValue copy = value;
  std::vector<AValue>& items = Mutable().items;
  if (index >= items.size()) items.resize(index + 1);
  items[index] = std::move(copy);
}

void AArray::RemoveAt(std::size_t index) {
  if (index >= Count()) return;
  std::vector<AValue>& items = Mutable().items;
  items.erase(items.begin() + static_cast<std::ptrdiff_t>(index));
}

void AArray::Clear() {
  if (!IsEmpty()) storage_ = EmptyStorage();
}

bool operator==(const AArray& a, const AArray& b) {
  return a.storage_ == b.storage_ || a.storage_->items == b.storage_->items;
}

}  // namespace com_qv_print_driver_core_cpp_util_v1
