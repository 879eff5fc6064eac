#include "generators/APPDMarkerAttributesGenerator.h"

#include <vector>

#include "core/RKPPDMessages.h"
#include "generators/APPDProductData.h"

namespace ppdforge {

PPDFORGE_REGISTER_GENERATOR(APPDMarkerAttributesGenerator);

namespace {

using State = APPDProductData::State;

struct Line {
  AQVString name;
  AQVString spec;
  AQVString text;
  AQVString value;
};

bool ReadLines(const ADictionary& product, std::vector<Line>& lines, AError* error) {
  AArray markers;
  if (APPDProductData::GetArray(product, "markers", APPDProductData::kRootPath, markers, error) ==
      State::kInvalid) {
    return false;
  }
  const AQVString listPath = APPDProductData::MemberPath(APPDProductData::kRootPath, "markers");
  for (std::size_t i = 0; i < markers.Count(); ++i) {
    const AQVString path = APPDProductData::ElementPath(listPath, i);
    ADictionary marker;
    if (!APPDProductData::GetDictionaryAt(markers, i, listPath, marker, error)) return false;
    Line line{"cupsMarkerName", AQVString(), AQVString(), AQVString()};
    const State name = APPDProductData::GetString(marker, "name", path, line.spec, error);
    if (name == State::kInvalid) return false;
    if (name == State::kAbsent) {
      return APPDProductData::ReportInvalid(error, APPDProductData::MemberPath(path, "name"),
                                            "a non-empty string");
    }
    if (APPDProductData::GetString(marker, "userName", path, line.text, error) == State::kInvalid) {
      return false;
    }
    lines.push_back(line);
  }
  AQVString notice;
  const State noticeState = APPDProductData::GetString(product, "markerNotice",
                                                       APPDProductData::kRootPath, notice, error);
  if (noticeState == State::kInvalid) return false;
  if (noticeState == State::kPresent) {
    lines.push_back({"cupsMarkerNotice", AQVString(), AQVString(), notice});
  }
  return true;
}

}  // namespace

bool APPDMarkerAttributesGenerator::IsApplicable() const {
  const std::optional<ADictionary> product = APPDProductData::Load(GetPPDGenerator());
  if (!product) return false;
  AArray markers;
  AQVString notice;
  return APPDProductData::GetArray(*product, "markers", APPDProductData::kRootPath, markers,
                                   nullptr) != State::kAbsent ||
         APPDProductData::GetString(*product, "markerNotice", APPDProductData::kRootPath, notice,
                                    nullptr) != State::kAbsent;
}

bool APPDMarkerAttributesGenerator::Generate(AError* error) {
  const std::optional<ADictionary> product = APPDProductData::Load(GetPPDGenerator());
  if (!product) return true;
  std::vector<Line> lines;
  if (!ReadLines(*product, lines, error)) return false;
  const AQVString comment = GetAttributeComment();
  for (std::size_t i = 0; i < lines.size(); ++i) {
    const Line& line = lines[i];
    if (!AddAttribute(line.name, line.value, line.spec, line.text, kPPDQuotedValue,
                      i == 0 ? comment : AQVString())) {
      return messages::Report(error, messages::kCannotAddAttribute,
                              {line.name, line.spec, line.text, line.value});
    }
  }
  return true;
}

}  // namespace ppdforge
