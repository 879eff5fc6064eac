#include "generators/colorprofiles/AICCProfilesGenerator.h"

#include <optional>
#include <unordered_map>

#include "core/ADictionary.h"
#include "engine/IPPDGenerator.h"
#include "engine/IProductInfo.h"
#include "model/RKPPDConstants.h"

namespace ppdforge {

namespace {

std::optional<AICCProfilesGenerator::Profile> ReadProfile(const AValue& item) {
  ADictionary entry;
  if (!item.GetDictionary(entry)) return std::nullopt;
  AICCProfilesGenerator::Profile profile;
  if (!entry.GetString(kRKPPDColorProfileNameKey, profile.name) || profile.name.IsEmpty() ||
      !entry.GetString(kRKPPDColorProfilePathKey, profile.path) || profile.path.IsEmpty()) {
    return std::nullopt;
  }
  if (!entry.GetString(kRKPPDColorProfileUserNameKey, profile.userName) ||
      profile.userName.IsEmpty()) {
    profile.userName = profile.name;
  }
  entry.GetString(kRKPPDColorProfileColorModelKey, profile.colorModel);
  entry.GetString(kRKPPDColorProfileMediaTypeKey, profile.mediaType);
  entry.GetString(kRKPPDColorProfileResolutionKey, profile.resolution);
  const AValue* isDefault = entry.Get(kRKPPDColorProfileDefaultKey);
  profile.isDefault = isDefault != nullptr && isDefault->BoolValue();
  return profile;
}

}  // namespace

void AICCProfilesGenerator::Initialize(const IPPDGenerator* generator) {
  profiles_.clear();
  values_.Clear();
  const IProductInfo* product = generator != nullptr ? generator->GetPPDProductInfo() : nullptr;
  const std::optional<AArray> entries = product != nullptr ? product->ColorProfiles() : std::nullopt;
  if (!entries) return;

  // A redefinition keeps the place of the first definition, so that the
  // order in which CUPS matches profiles stays the author's.
  std::unordered_map<AQVString, std::size_t> indexByName;
  for (const AValue& item : *entries) {
    std::optional<Profile> profile = ReadProfile(item);
    if (!profile) continue;
    const auto [slot, inserted] = indexByName.emplace(profile->name, profiles_.size());
    if (inserted) {
      profiles_.push_back(std::move(*profile));
    } else {
      profiles_[slot->second] = std::move(*profile);
    }
  }
  for (const Profile& profile : profiles_) {
    ADictionary value;
    value.Set(kRKPPDCommonCodeNameKey, profile.name);
    value.Set(kRKPPDCommonUserNameKey, profile.userName);
    values_.Append(value);
  }
}

const AICCProfilesGenerator::Profile* AICCProfilesGenerator::GetDefaultProfile() const {
  for (const Profile& profile : profiles_) {
    if (profile.isDefault) return &profile;
  }
  return profiles_.empty() ? nullptr : &profiles_.front();
}

AQVString AICCProfilesGenerator::QualifierSpec(const Profile& profile) {
  return profile.colorModel + "." + profile.mediaType + "." + profile.resolution;
}

}  // namespace ppdforge
