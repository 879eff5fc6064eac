#include "core/AValue.h"

#include <cmath>
#include <limits>

#include "core/AArray.h"
#include "core/ADictionary.h"

namespace com_qv_print_driver_core_cpp_util_v1 {

namespace {

using ArrayPtr = std::shared_ptr<const AArrayStorage>;
using DictionaryPtr = std::shared_ptr<const ADictionaryStorage>;

long long TruncateReal(double value) {
  if (std::isnan(value)) return 0;
  if (value >= 9223372036854775808.0) return std::numeric_limits<long long>::max();
  if (value < -9223372036854775808.0) return std::numeric_limits<long long>::min();
  return static_cast<long long>(value);
}

bool IntegerEqualsReal(std::int64_t integer, double real) {
  if (!(real >= -9223372036854775808.0 && real < 9223372036854775808.0)) return false;
  if (std::trunc(real) != real) return false;
  return static_cast<std::int64_t>(real) == integer;
}

}  // namespace

AValue::AValue(const AArray& value) : value_(value.storage_) {}

AValue::AValue(const ADictionary& value) : value_(value.storage_) {}

AValue AValue::Data(std::string bytes) {
  AValue result;
  result.value_ = DataBytes{std::move(bytes)};
  return result;
}

AValue AValue::Date(double seconds) {
  AValue result;
  result.value_ = DateValueT{seconds};
  return result;
}

AValue::Type AValue::GetType() const {
  switch (value_.index()) {
    case 1: return Type::kBoolean;
    case 2: return Type::kInteger;
    case 3: return Type::kReal;
    case 4: return Type::kString;
    case 5: return Type::kData;
    case 6: return Type::kDate;
    case 7: return Type::kArray;
    case 8: return Type::kDictionary;
    default: return Type::kNull;
  }
}

bool AValue::BoolValue() const {
  if (const bool* b = std::get_if<bool>(&value_)) return *b;
  if (const std::int64_t* i = std::get_if<std::int64_t>(&value_)) return *i != 0;
  if (const double* d = std::get_if<double>(&value_)) return *d != 0.0;
  if (const AQVString* s = std::get_if<AQVString>(&value_)) return s->BoolValue();
  return false;
}

long long AValue::IntegerValue() const {
  if (const bool* b = std::get_if<bool>(&value_)) return *b ? 1 : 0;
  if (const std::int64_t* i = std::get_if<std::int64_t>(&value_)) return *i;
  if (const double* d = std::get_if<double>(&value_)) return TruncateReal(*d);
  if (const AQVString* s = std::get_if<AQVString>(&value_)) return s->IntegerValue();
  return 0;
}

double AValue::DoubleValue() const {
  if (const bool* b = std::get_if<bool>(&value_)) return *b ? 1.0 : 0.0;
  if (const std::int64_t* i = std::get_if<std::int64_t>(&value_)) return static_cast<double>(*i);
  if (const double* d = std::get_if<double>(&value_)) return *d;
  if (const AQVString* s = std::get_if<AQVString>(&value_)) return s->DoubleValue();
  return 0.0;
}

const std::string* AValue::AsData() const {
  const DataBytes* data = std::get_if<DataBytes>(&value_);
  return data == nullptr ? nullptr : &data->bytes;
}

bool AValue::GetArray(AArray& out) const {
  const ArrayPtr* storage = std::get_if<ArrayPtr>(&value_);
  if (storage == nullptr) return false;
  out = AArray(*storage);
  return true;
}

bool AValue::GetDictionary(ADictionary& out) const {
  const DictionaryPtr* storage = std::get_if<DictionaryPtr>(&value_);
  if (storage == nullptr) return false;
  out = ADictionary(*storage);
  return true;
}

double AValue::DateValue() const {
  const DateValueT* date = std::get_if<DateValueT>(&value_);
  return date == nullptr ? 0.0 : date->seconds;
}

bool operator==(const AValue& a, const AValue& b) {
  const std::int64_t* ai = std::get_if<std::int64_t>(&a.value_);
  const double* ad = std::get_if<double>(&a.value_);
  const std::int64_t* bi = std::get_if<std::int64_t>(&b.value_);
  const double* bd = std::get_if<double>(&b.value_);
  if (ai != nullptr && bd != nullptr) return IntegerEqualsReal(*ai, *bd);
  if (ad != nullptr && bi != nullptr) return IntegerEqualsReal(*bi, *ad);
  if (a.value_.index() != b.value_.index()) return false;
  if (const ArrayPtr* array = std::get_if<ArrayPtr>(&a.value_)) {
    const ArrayPtr& other = std::get<ArrayPtr>(b.value_);
    return *array == other || (*array)->items == other->items;
  }
  if (const DictionaryPtr* dictionary = std::get_if<DictionaryPtr>(&a.value_)) {
    const DictionaryPtr& other = std::get<DictionaryPtr>(b.value_);
    return *dictionary == other || (*dictionary)->items == other->items;
  }
  return a.value_ == b.value_;
}

const char* AValue::TypeName(Type type) {
  switch (type) {
    case Type::kNull: return "null";
    case Type::kBoolean: return "boolean";
    case Type::kInteger: return "integer";
    case Type::kReal: return "real";
    case Type::kString: return "string";
    case Type::kData: return "data";
    case Type::kDate: return "date";
    case Type::kArray: return "array";
    case Type::kDictionary: return "dictionary";
  }
  return "unknown";
}

}  // namespace com_qv_print_driver_core_cpp_util_v1
