#pragma once
// The colour profiles a product offers ("colorProfiles"), read once from the
// product: in the product's order, a later profile with the same "name"
// taking the place of the earlier one. Shared by the ICC profile option and
// the colour-matching attributes. A plain value; it keeps no engine.

#include <cstddef>
#include <vector>

#include "core/AArray.h"
#include "core/AQVString.h"

namespace ppdforge {

class IPPDGenerator;

// Keys of one profile dictionary of the product description.
inline constexpr const char* kRKPPDColorProfileNameKey = "name";
inline constexpr const char* kRKPPDColorProfileUserNameKey = "userName";
inline constexpr const char* kRKPPDColorProfilePathKey = "path";
inline constexpr const char* kRKPPDColorProfileColorModelKey = "colorModel";
inline constexpr const char* kRKPPDColorProfileMediaTypeKey = "mediaType";
inline constexpr const char* kRKPPDColorProfileResolutionKey = "resolution";
inline constexpr const char* kRKPPDColorProfileDefaultKey = "default";

class AICCProfilesGenerator {
 public:
  struct Profile {
    AQVString name;        // choice keyword
    AQVString userName;    // display text; the name when the product gives none
    AQVString path;        // ICC file on the target system
    AQVString colorModel;  // qualifiers; empty means any
    AQVString mediaType;
    AQVString resolution;
    bool isDefault = false;  // the profile for custom colour matching
  };

  // Reads the profiles of the engine's product, forgetting earlier ones.
  // Entries that are not dictionaries or lack a non-empty "name" or "path"
  // are passed over (the product loader reports them). A null engine or
  // product leaves no profiles.
  void Initialize(const IPPDGenerator* generator);

  const std::vector<Profile>& GetProfiles() const { return profiles_; }
  // One dictionary per profile with "name" and "userName", in order: the
  // setting values of the ICC profile option.
  const AArray& GetProfileValues() const { return values_; }
  // The first profile marked "default", else the first; null without profiles.
  const Profile* GetDefaultProfile() const;
  // The cupsICCProfile qualifier spec "COLORMODEL.MEDIATYPE.RESOLUTION".
  static AQVString QualifierSpec(const Profile& profile);

 private:
  std::vector<Profile> profiles_;
  AArray values_;
};

}  // namespace ppdforge
