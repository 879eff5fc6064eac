#include "generators/APPDIPPReasonAttributesGenerator.h"

#include <vector>

#include "core/RKPPDMessages.h"
#include "generators/APPDProductData.h"
#include "model/APPDIPPReason.h"
#include "model/RKPPDConstants.h"

namespace ppdforge {

PPDFORGE_REGISTER_GENERATOR(APPDIPPReasonAttributesGenerator);

namespace {

using State = APPDProductData::State;

struct Reason {
  AQVString reason;
  AQVString message;
  AQVString value;
};

bool ReadRequiredString(const ADictionary& entry, const char* key, const AQVString& path,
                        AQVString& out, AError* error) {
  const State state = APPDProductData::GetString(entry, key, path, out, error);
  if (state == State::kInvalid) return false;
  if (state == State::kAbsent) {
    return APPDProductData::ReportInvalid(error, APPDProductData::MemberPath(path, key),
                                          "a non-empty string");
  }
  return true;
}

bool ReadReasons(const ADictionary& product, std::vector<Reason>& reasons, AError* error) {
  AArray list;
  if (APPDProductData::GetArray(product, "ippReasons", APPDProductData::kRootPath, list, error) ==
      State::kInvalid) {
    return false;
  }
  const AQVString listPath = APPDProductData::MemberPath(APPDProductData::kRootPath, "ippReasons");
  for (std::size_t i = 0; i < list.Count(); ++i) {
    const AQVString path = APPDProductData::ElementPath(listPath, i);
    ADictionary entry;
    if (!APPDProductData::GetDictionaryAt(list, i, listPath, entry, error)) return false;
    Reason reason;
    if (!ReadRequiredString(entry, "reason", path, reason.reason, error) ||
        !ReadRequiredString(entry, "message", path, reason.message, error)) {
      return false;
    }
    const State value = APPDProductData::GetString(entry, "value", path, reason.value, error);
    if (value == State::kInvalid) return false;
    if (value == State::kAbsent) reason.value = reason.message;
    reasons.push_back(reason);
  }
  return true;
}

}  // namespace

bool APPDIPPReasonAttributesGenerator::IsApplicable() const {
  const std::optional<ADictionary> product = APPDProductData::Load(GetPPDGenerator());
  AArray list;
  return product && APPDProductData::GetArray(*product, "ippReasons", APPDProductData::kRootPath,
                                              list, nullptr) != State::kAbsent;
}

bool APPDIPPReasonAttributesGenerator::Generate(AError* error) {
  const std::optional<ADictionary> product = APPDProductData::Load(GetPPDGenerator());
  if (!product) return true;
  std::vector<Reason> reasons;
  if (!ReadReasons(*product, reasons, error)) return false;
  const AQVString comment = GetAttributeComment();
  for (std::size_t i = 0; i < reasons.size(); ++i) {
    const Reason& entry = reasons[i];
    AScopedRef<IPPDAttribute> reason(APPDIPPReason::Create(kRKPPDIPPReasonKeyword, entry.reason,
                                                           entry.message, entry.value,
                                                           i == 0 ? comment : AQVString()));
    if (!reason || !AddAttribute(reason.get())) {
      return messages::Report(error, messages::kCannotAddAttribute,
                              {kRKPPDIPPReasonKeyword, entry.reason, entry.message, entry.value});
    }
  }
  return true;
}

}  // namespace ppdforge
