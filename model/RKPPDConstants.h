#pragma once
// The library's exported constants: PPD punctuation and keywords, and the
// keys of the generation descriptions, media dictionaries and product
// settings.

namespace ppdforge {

// Punctuation of statements.
inline constexpr const char* kRKPPDAsterisk = "*";
inline constexpr const char* kRKPPDSpace = " ";
inline constexpr const char* kRKPPDColon = ":";
inline constexpr const char* kRKPPDSlash = "/";
inline constexpr const char* kRKPPDDoubleQuote = "\"";
inline constexpr const char* kRKPPDCaret = "^";
inline constexpr const char* kRKPPDNewLine = "\n";
inline constexpr const char* kRKPPDCarriageReturn = "\r";
inline constexpr const char* kRKPPDCommentPrefix = "*% ";
inline constexpr const char* kRKPPDAllowedPPDCharsUnder33 = "\t\n\r ";
inline constexpr const char* kRKPPDEndKeyword = "End";

// Keywords and names.
inline constexpr const char* kRKPPDGeneralGroupName = "General";
inline constexpr const char* kRKPPDPageSizeKeyword = "PageSize";
inline constexpr const char* kRKPPDPageRegionKeyword = "PageRegion";
inline constexpr const char* kRKPPDPageSizeHumanReadableName = "Paper Size";
inline constexpr const char* kRKPPDOptionPageSizeName = "QVPaperInfo";
inline constexpr const char* kRKPPDCUPSUIResolverKeyword = "cupsUIResolver";
inline constexpr const char* kRKPPDIPPReasonKeyword = "cupsIPPReason";
inline constexpr const char* kRKPPDLanguageVersionKeyword = "LanguageVersion";
inline constexpr const char* kRKPPDCUPSLanguagesKeyword = "cupsLanguages";
inline constexpr const char* kRKPPDSupportsCustomPageSizeKey = "supportsCustomPageSize";
inline constexpr const char* kRKPPDDummySettingName = "DummySettingName";

// Generation descriptions: common keys.
inline constexpr const char* kRKPPDGenerationClassNameKey = "generator";
inline constexpr const char* kRKPPDGenerationCommentKey = "comment";

// Attribute descriptions.
inline constexpr const char* kRKPPDGenerationAttributeNameKey = "name";
inline constexpr const char* kRKPPDGenerationAttributeSpecKey = "spec";
inline constexpr const char* kRKPPDGenerationAttributeTextKey = "translation";
inline constexpr const char* kRKPPDGenerationAttributeValueKey = "value";
inline constexpr const char* kRKPPDGenerationAttributeValueTypeKey = "value-type";

// Option descriptions.
inline constexpr const char* kRKPPDGenerationOptionIDKey = "code-name";
inline constexpr const char* kRKPPDGenerationOptionNameKey = "user-name";
inline constexpr const char* kRKPPDGenerationOptionGroupNameKey = "group-name";
inline constexpr const char* kRKPPDGenerationOptionSettingNameKey = "setting-name";
inline constexpr const char* kRKPPDGenerationOptionMinValueCountKey = "min-value-count";
inline constexpr const char* kRKPPDGenerationOptionUITypeKey = "ui-type";
inline constexpr const char* kRKPPDGenerationOptionChoicesKey = "choices";
inline constexpr const char* kRKPPDGenerationOptionChoiceCodeRepresentationKey = "choice-generic-code";
inline constexpr const char* kRKPPDGenerationOptionDefaultChoiceIDKey = "default-choice";
inline constexpr const char* kRKPPDGenerationChoiceIDKey = "id";
inline constexpr const char* kRKPPDGenerationChoiceNameKey = "name";
inline constexpr const char* kRKPPDGenerationChoiceCodeKey = "code";

// Resolver and constraint descriptions.
inline constexpr const char* kRKPPDGenerationResolverNameKey = "resolver-name";
inline constexpr const char* kRKPPDGenerationOptionIDKeyFormat = "option-%d";
inline constexpr const char* kRKPPDGenerationChoiceIDKeyFormat = "choice-%d";
inline constexpr const char* kRKPPDGenerationNonUIKey = "non-ui";
inline constexpr const char* kRKPPDGenerationCUPSUIConstraintKey = "cupsUIConstraint";
inline constexpr const char* kRKPPDGenerationResolverKey = "resolver";

// Product settings (infoForOptionWithName:).
inline constexpr const char* kRKPPDOptionUserNameKey = "userName";
inline constexpr const char* kRKPPDOptionChoicesKey = "values";
inline constexpr const char* kRKPPDOptionDefaultChoiceNameKey = "defaultChoice";
inline constexpr const char* kRKPPDCommonCodeNameKey = "name";
inline constexpr const char* kRKPPDCommonUserNameKey = "userName";

// Media dictionaries of "QVPaperInfo".
inline constexpr const char* kRKPPDPageSizeIsCustomSizeKey = "isCustomMediaSize";
inline constexpr const char* kRKPPDPageSizePPDNameKey = "PPDName";
inline constexpr const char* kRKPPDPageSizePaperRectTopKey = "paperRectTop";
inline constexpr const char* kRKPPDPageSizePaperRectLeftKey = "paperRectLeft";
inline constexpr const char* kRKPPDPageSizePaperRectBottomKey = "paperRectBottom";
inline constexpr const char* kRKPPDPageSizePaperRectRightKey = "paperRectRight";
inline constexpr const char* kRKPPDPageSizePageRectTopKey = "pageRectTop";
inline constexpr const char* kRKPPDPageSizePageRectLeftKey = "pageRectLeft";
inline constexpr const char* kRKPPDPageSizePageRectBottomKey = "pageRectBottom";
inline constexpr const char* kRKPPDPageSizePageRectRightKey = "pageRectRight";
inline constexpr const char* kRKPPDPageSizeSupportsFullBleedKey = "supportsFullBleed";
inline constexpr const char* kRKPPDPageSizeOversprayScaleFactorKey = "oversprayScaleFactor";
inline constexpr const char* kRKPPDPageSizeCategoryKey = "mediaSizeCategory";

}  // namespace ppdforge
