#include "generators/APPDPrinterPresetsGenerator.h"

#include <vector>

#include "core/RKPPDMessages.h"
#include "generators/APPDProductData.h"

namespace ppdforge {

PPDFORGE_REGISTER_GENERATOR(APPDPrinterPresetsGenerator);

namespace {

struct Preset {
  AQVString name;
  AQVString userName;
  AQVString value;
};

using State = APPDProductData::State;

// Appends the pairs of `key` of `preset` as lines "PREFIX FIRST SECOND".
bool AppendPairs(const ADictionary& preset, const char* key, const AQVString& path,
                 const char* prefix, AQVString& value, AError* error) {
  AArray pairs;
  const State state = APPDProductData::GetArray(preset, key, path, pairs, error);
  if (state == State::kInvalid) return false;
  const AQVString pairsPath = APPDProductData::MemberPath(path, key);
  for (std::size_t i = 0; i < pairs.Count(); ++i) {
    AQVString first;
    AQVString second;
    if (!APPDProductData::GetStringPairAt(pairs, i, pairsPath, first, second, error)) return false;
    if (!value.IsEmpty()) value += "\n";
    value += prefix;
    value += first + " " + second;
  }
  return true;
}

// Reads and checks every preset before any attribute is added.
bool ReadPresets(const ADictionary& product, std::vector<Preset>& presets, AError* error) {
  AArray list;
  if (APPDProductData::GetArray(product, "presets", APPDProductData::kRootPath, list, error) ==
      State::kInvalid) {
    return false;
  }
  const AQVString listPath = APPDProductData::MemberPath(APPDProductData::kRootPath, "presets");
  for (std::size_t i = 0; i < list.Count(); ++i) {
    const AQVString path = APPDProductData::ElementPath(listPath, i);
    ADictionary entry;
    if (!APPDProductData::GetDictionaryAt(list, i, listPath, entry, error)) return false;
    Preset preset;
    const State name = APPDProductData::GetString(entry, "name", path, preset.name, error);
    if (name == State::kInvalid) return false;
    if (name == State::kAbsent) {
      return APPDProductData::ReportInvalid(error, APPDProductData::MemberPath(path, "name"),
                                            "a non-empty string");
    }
    if (APPDProductData::GetString(entry, "userName", path, preset.userName, error) ==
        State::kInvalid) {
      return false;
    }
    if (!AppendPairs(entry, "settings", path, "*", preset.value, error) ||
        !AppendPairs(entry, "presetValues", path, "", preset.value, error)) {
      return false;
    }
    presets.push_back(preset);
  }
  return true;
}

}  // namespace

bool APPDPrinterPresetsGenerator::IsApplicable() const {
  const std::optional<ADictionary> product = APPDProductData::Load(GetPPDGenerator());
  AArray list;
  return product && APPDProductData::GetArray(*product, "presets", APPDProductData::kRootPath, list,
                                              nullptr) != State::kAbsent;
}

bool APPDPrinterPresetsGenerator::Generate(AError* error) {
  const std::optional<ADictionary> product = APPDProductData::Load(GetPPDGenerator());
  if (!product) return true;
  std::vector<Preset> presets;
  if (!ReadPresets(*product, presets, error)) return false;
  const AQVString comment = GetAttributeComment();
  for (std::size_t i = 0; i < presets.size(); ++i) {
    const Preset& preset = presets[i];
    if (!AddAttribute(kPresetKeyword, preset.value, preset.name, preset.userName,
                      kPPDInvocationValue, i == 0 ? comment : AQVString())) {
      return messages::Report(error, messages::kCannotAddAttribute,
                              {kPresetKeyword, preset.name, preset.userName, preset.value});
    }
  }
  return true;
}

}  // namespace ppdforge
