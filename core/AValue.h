#pragma once
// One property-list value: null, boolean, integer, real, string, data, date,
// array or dictionary. Copies are cheap (containers are shared and copied on
// write).

#include <cstdint>
#include <memory>
#include <string>
#include <utility>
#include <variant>

#include "core/AQVString.h"

namespace com_qv_print_driver_core_cpp_util_v1 {

class AArray;
class ADictionary;
struct AArrayStorage;
struct ADictionaryStorage;

class AValue {
 public:
  enum class Type { kNull, kBoolean, kInteger, kReal, kString, kData, kDate, kArray, kDictionary };

  AValue() = default;
  AValue(bool value) : value_(value) {}                       // NOLINT
  AValue(int value) : value_(static_cast<std::int64_t>(value)) {}  // NOLINT
  AValue(long value) : value_(static_cast<std::int64_t>(value)) {}  // NOLINT
  AValue(long long value) : value_(static_cast<std::int64_t>(value)) {}  // NOLINT
  AValue(double value) : value_(value) {}                     // NOLINT
  AValue(const AQVString& value) : value_(value) {}           // NOLINT
  AValue(AQVString&& value) : value_(std::move(value)) {}     // NOLINT
  AValue(const char* value) : value_(AQVString(value)) {}     // NOLINT
  AValue(const AArray& value);                                // NOLINT
  AValue(const ADictionary& value);                           // NOLINT
  // Raw bytes (a property list's data element).
  static AValue Data(std::string bytes);
  // Seconds since 2001-01-01 00:00:00 UTC (a property list's date element).
  static AValue Date(double seconds);

  Type GetType() const;
  bool IsNull() const { return GetType() == Type::kNull; }
  bool IsBoolean() const { return GetType() == Type::kBoolean; }
  // Integer or real; a boolean is not a number here (callers that accept
  // both ask IsBoolean() too).
  bool IsNumber() const { return GetType() == Type::kInteger || GetType() == Type::kReal; }
  bool IsString() const { return GetType() == Type::kString; }
  bool IsArray() const { return GetType() == Type::kArray; }
  bool IsDictionary() const { return GetType() == Type::kDictionary; }

  // Readings as Foundation gives them: numbers and booleans convert, a string
  // is parsed (AQVString::IntegerValue and friends), anything else is 0/false.
  bool BoolValue() const;
  long long IntegerValue() const;
  double DoubleValue() const;

  // Borrowed views; null when the value has another type. The pointer lives
  // as long as this value is not assigned to.
  const AQVString* AsString() const { return std::get_if<AQVString>(&value_); }
  const std::string* AsData() const;
  // Copies of the container wrappers (cheap); false when of another type.
  bool GetArray(AArray& out) const;
  bool GetDictionary(ADictionary& out) const;
  double DateValue() const;

  // Deep equality; an integer and a real of the same value are equal, a
  // boolean equals only a boolean.
  friend bool operator==(const AValue& a, const AValue& b);

  // Name of the type for error messages ("string", "array", ...).
  static const char* TypeName(Type type);

 private:
  friend class AArray;
  friend class ADictionary;
  struct DataBytes { std::string bytes; friend bool operator==(const DataBytes&, const DataBytes&) = default; };
  struct DateValueT { double seconds = 0; friend bool operator==(const DateValueT&, const DateValueT&) = default; };
  std::variant<std::monostate, bool, std::int64_t, double, AQVString, DataBytes, DateValueT,
               std::shared_ptr<const AArrayStorage>, std::shared_ptr<const ADictionaryStorage>>
      value_;
};

}  // namespace com_qv_print_driver_core_cpp_util_v1

namespace ppdforge {
using com_qv_print_driver_core_cpp_util_v1::AValue;
}
