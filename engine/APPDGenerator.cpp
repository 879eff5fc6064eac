#include "engine/APPDGenerator.h"

#include <optional>
#include <utility>

#include "core/ASharedObject.h"
#include "core/RKPPDMessages.h"
#include "engine/IPPDObjectGenerator.h"
#include "model/RKPPDConstants.h"

namespace ppdforge {

namespace {

// The engine names the generator classes only by their registered names, so
// that it does not depend on the generators layer.
constexpr const char* kDefaultAttributesGenerator = "APPDGenericAttributesGenerator";
constexpr const char* kPageSizesGenerator = "APPDPageSizesGenerator";
constexpr const char* kDefaultOptionGenerator = "APPDGenericOptionGenerator";
constexpr const char* kDefaultResolverGenerator = "APPDCUPSUIResolverGenerator";
constexpr const char* kDefaultConstraintsGenerator = "APPDGenericConstraintsGenerator";

// CUPS 1.2.0 introduced "cupsLanguages".
constexpr long kFirstCUPSVersionWithLanguages = 0x120;

}  // namespace

IPPDGenerator* IPPDGenerator::Create(std::shared_ptr<const IProductInfo> productInfo) {
  return CreateSharedObject<APPDGenerator>(std::move(productInfo));
}

APPDGenerator::APPDGenerator(std::shared_ptr<const IProductInfo> productInfo)
    : productInfo_(std::move(productInfo)) {}

APPDGenerator::~APPDGenerator() {
  ReleaseObject(std::exchange(ppd_, nullptr));
  ReleaseObject(std::exchange(localizer_, nullptr));
  productInfo_.reset();
}

void APPDGenerator::ResetPPD() {
  ReleaseObject(std::exchange(ppd_, nullptr));
  ppd_ = IPPD::Create();
  if (ppd_ == nullptr) return;
  ppd_->SetLocalizer(GetPPDLocalizer());
}

bool APPDGenerator::CreatePPDObjects(AError* error) {
  ResetPPD();
  if (productInfo_ == nullptr) return messages::Report(error, messages::kProductInfoNotAvailable);
  // Only an allocation failure leaves no document; the generators need one.
  if (ppd_ == nullptr) return messages::Report(error, messages::kPPDObjectsNotCreated);
  return GenerateAttributes(error) && GeneratePageSizes(error) && GenerateOptions(error) &&
         GenerateResolvers(error) && GenerateConstraints(error);
}

bool APPDGenerator::GenerateAttributes(AError* error) {
  const std::optional<AArray> descriptions = productInfo_->AttributesGenerationInfo();
  if (!descriptions) return messages::Report(error, messages::kNoAttributesDescription);
  return GeneratePPDObjects(*descriptions, kDefaultAttributesGenerator, error);
}

bool APPDGenerator::GeneratePageSizes(AError* error) {
  const ADictionary noDescription;
  AScopedRef<IPPDObjectGenerator> generator(
      IPPDObjectGenerator::Create(kPageSizesGenerator, this, &noDescription));
  if (!generator) return messages::Report(error, messages::kCannotCreatePageSizeGenerator);
  if (!generator->IsApplicable()) return true;
  return generator->Generate(error);
}

bool APPDGenerator::GenerateOptions(AError* error) {
  const std::optional<AArray> descriptions = productInfo_->OptionsGenerationInfo();
  if (!descriptions) return messages::Report(error, messages::kNoOptionsDescription);
  return GeneratePPDObjects(*descriptions, kDefaultOptionGenerator, error);
}

bool APPDGenerator::GenerateResolvers(AError* error) {
  const std::optional<AArray> descriptions = productInfo_->CUPSUIResolversGenerationInfo();
  if (!descriptions) return messages::Report(error, messages::kNoResolversDescription);
  return GeneratePPDObjects(*descriptions, kDefaultResolverGenerator, error);
}

bool APPDGenerator::GenerateConstraints(AError* error) {
  const std::optional<AArray> descriptions = productInfo_->ConstraintsGenerationInfo();
  if (!descriptions) return messages::Report(error, messages::kNoConstraintsDescription);
  return GeneratePPDObjects(*descriptions, kDefaultConstraintsGenerator, error);
}

bool APPDGenerator::GeneratePPDObjects(const AArray& descriptions,
                                       const AQVString& defaultClassName, AError* error) {
  // A failure does not stop the phase: the result is that of the last
  // description that ran or could not be created, and an error once stored
  // stays stored.
  bool result = true;
  for (const AValue& element : descriptions) {
    // Product loaders reject elements that are not dictionaries; one that
    // slips through runs the default class without parameters.
    ADictionary description;
    element.GetDictionary(description);
    AQVString className = description.GetString(kRKPPDGenerationClassNameKey);
    if (className.IsEmpty()) className = defaultClassName;

    AScopedRef<IPPDObjectGenerator> generator(
        IPPDObjectGenerator::Create(className, this, &description));
    if (generator) {
      if (generator->IsApplicable()) result = generator->Generate(error);
    } else {
      result = messages::Report(error, messages::kUnknownGeneratorClass, {className});
    }
  }
  return result;
}

AQVString APPDGenerator::GetMainLocale() const {
  AQVString language;
  if (ppd_ != nullptr) {
    language = ppd_->GetAttributeValueWithNameAndSpec(kRKPPDLanguageVersionKeyword, nullptr);
  }
  return IPPDLocalizer::GetLocaleID(language);
}

void APPDGenerator::SetMainLocale(const AQVString& locale) {
  if (locale.IsEmpty() || ppd_ == nullptr) return;
  ppd_->RemoveAttributesWithNameAndSpec(kRKPPDLanguageVersionKeyword, nullptr);
  ppd_->AddAttribute(kRKPPDLanguageVersionKeyword, IPPDLocalizer::GetLocalizationName(locale), "",
                     "", kPPDStringValue, "");
}

std::vector<AQVString> APPDGenerator::GetSupportedLocales() const {
  std::vector<AQVString> locales{GetMainLocale()};
  if (ppd_ == nullptr) return locales;
  const AQVString languages =
      ppd_->GetAttributeValueWithNameAndSpec(kRKPPDCUPSLanguagesKeyword, nullptr);
  // Splitting an empty value would give one empty locale; there is none.
  if (languages.IsEmpty()) return locales;
  for (AQVString& locale : languages.ParseDelimitedString(kRKPPDSpace)) {
    locales.push_back(std::move(locale));
  }
  return locales;
}

void APPDGenerator::SetSupportedLocales(const std::vector<AQVString>& locales) {
  if (productInfo_ == nullptr || productInfo_->CUPSVersion() < kFirstCUPSVersionWithLanguages) {
    return;
  }
  if (locales.empty() || ppd_ == nullptr) return;
  ppd_->RemoveAttributesWithNameAndSpec(kRKPPDCUPSLanguagesKeyword, nullptr);
  const AQVString mainLocale = GetMainLocale();
  AQVString joined;
  for (const AQVString& locale : locales) {
    if (locale == mainLocale) continue;
    if (!joined.IsEmpty()) joined += kRKPPDSpace;
    joined += locale;
  }
  ppd_->AddAttribute(kRKPPDCUPSLanguagesKeyword, joined, "", "", kPPDQuotedValue, "");
}

void APPDGenerator::AddLocalizedStringsFromBundleAtPath(const AQVString& path) {
  IPPDLocalizer* localizer = GetPPDLocalizer();
  if (localizer != nullptr) localizer->LoadStrings(path, AQVString());
}

IPPDLocalizer* APPDGenerator::GetPPDLocalizer() const {
  if (localizer_ == nullptr) localizer_ = IPPDLocalizer::Create();
  return localizer_;
}

void APPDGenerator::RemoveUIConstraintBetween(const AQVString& option1, const AQVString& choice1,
                                              const AQVString& option2,
                                              const AQVString& choice2) const {
  if (ppd_ == nullptr) return;
  std::vector<IPPDConstraint*> constraints;
  ppd_->GetConstraintsWithOptionAndChoice(option1, choice1, constraints);
  for (IPPDConstraint* constraint : constraints) {
    const bool matchesSide1 =
        option2 == constraint->GetOptionAtIndex(1) && choice2 == constraint->GetChoiceAtIndex(1);
    const bool matchesSide0 =
        option2 == constraint->GetOptionAtIndex(0) && choice2 == constraint->GetChoiceAtIndex(0);
    if (matchesSide1 || matchesSide0) ppd_->RemoveConstraint(constraint);
  }
}

ADictionary APPDGenerator::ExtractOptionsAndChoicesFromString(const AQVString& text) const {
  ADictionary result;
  for (const AQVString& piece : text.ParseDelimitedString(kRKPPDAsterisk)) {
    const AQVString trimmed = piece.TrimWhitespace();
    if (trimmed.IsEmpty()) continue;
    const std::vector<AQVString> words = trimmed.SplitAtWhitespace();
    if (words.empty()) continue;
    result.Set(words.front(), words.size() >= 2 ? words.back() : AQVString());
  }
  return result;
}

}  // namespace ppdforge
