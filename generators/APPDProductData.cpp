#include "generators/APPDProductData.h"

#include "core/RKPPDMessages.h"

namespace ppdforge {

std::optional<ADictionary> APPDProductData::Load(const IPPDGenerator* generator) {
  const IProductInfo* product = generator != nullptr ? generator->GetPPDProductInfo() : nullptr;
  if (product == nullptr) return std::nullopt;
  return product->ProductData();
}

APPDProductData::State APPDProductData::GetString(const ADictionary& dictionary,
                                                  const AQVString& key, const AQVString& path,
                                                  AQVString& out, AError* error) {
  const AValue* value = dictionary.Get(key);
  if (value == nullptr) return State::kAbsent;
  const AQVString* text = value->AsString();
  if (text == nullptr) {
    ReportInvalid(error, MemberPath(path, key), "a string");
    return State::kInvalid;
  }
  if (text->IsEmpty()) return State::kAbsent;
  out = *text;
  return State::kPresent;
}

APPDProductData::State APPDProductData::GetArray(const ADictionary& dictionary,
                                                 const AQVString& key, const AQVString& path,
                                                 AArray& out, AError* error) {
  const AValue* value = dictionary.Get(key);
  if (value == nullptr) return State::kAbsent;
  AArray array;
  if (!value->GetArray(array)) {
    ReportInvalid(error, MemberPath(path, key), "an array");
    return State::kInvalid;
  }
  if (array.IsEmpty()) return State::kAbsent;
  out = array;
  return State::kPresent;
}

APPDProductData::State APPDProductData::GetDictionary(const ADictionary& dictionary,
                                                      const AQVString& key, const AQVString& path,
                                                      ADictionary& out, AError* error) {
  const AValue* value = dictionary.Get(key);
  if (value == nullptr) return State::kAbsent;
  if (!value->GetDictionary(out)) {
    ReportInvalid(error, MemberPath(path, key), "a dictionary");
    return State::kInvalid;
  }
  return State::kPresent;
}

APPDProductData::State APPDProductData::GetBoolean(const ADictionary& dictionary,
                                                   const AQVString& key, const AQVString& path,
                                                   bool& out, AError* error) {
  const AValue* value = dictionary.Get(key);
  if (value == nullptr) return State::kAbsent;
  if (!value->IsBoolean()) {
    ReportInvalid(error, MemberPath(path, key), "a boolean");
    return State::kInvalid;
  }
  out = value->BoolValue();
  return State::kPresent;
}

bool APPDProductData::GetDictionaryAt(const AArray& array, std::size_t index, const AQVString& path,
                                      ADictionary& out, AError* error) {
  if (index < array.Count() && array[index].GetDictionary(out)) return true;
  return ReportInvalid(error, ElementPath(path, index), "a dictionary");
}

bool APPDProductData::GetStringPairAt(const AArray& array, std::size_t index, const AQVString& path,
                                      AQVString& first, AQVString& second, AError* error) {
  AArray pair;
  if (index < array.Count() && array[index].GetArray(pair) && pair.Count() == 2) {
    const AQVString* a = pair[0].AsString();
    const AQVString* b = pair[1].AsString();
    if (a != nullptr && b != nullptr && !a->IsEmpty() && !b->IsEmpty()) {
      first = *a;
      second = *b;
      return true;
    }
  }
  return ReportInvalid(error, ElementPath(path, index), "an array of two non-empty strings");
}

AQVString APPDProductData::MemberPath(const AQVString& path, const AQVString& key) {
  return path + "." + key;
}

AQVString APPDProductData::ElementPath(const AQVString& path, std::size_t index) {
  return path + "[" + AQVString::FromInteger(static_cast<long long>(index)) + "]";
}

bool APPDProductData::ReportInvalid(AError* error, const AQVString& path,
                                    const AQVString& expectation) {
  return messages::Report(error, messages::kInvalidProductData, {path, expectation});
}

}  // namespace ppdforge
