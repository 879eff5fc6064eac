#include "generators/APPDInstallableOptionGenerator.h"

namespace ppdforge {

PPDFORGE_REGISTER_GENERATOR(APPDInstallableOptionGenerator);

bool APPDInstallableOptionGenerator::IsApplicable() const {
  if (!APPDSpecificOptionGenerator::IsApplicable()) return false;
  const std::optional<ADictionary> setting = GetProductSetting(GetOptionSettingName());
  if (!setting) return false;
  const AValue* enabled = setting->Get("enabled");
  return enabled != nullptr && enabled->BoolValue();
}

}  // namespace ppdforge
