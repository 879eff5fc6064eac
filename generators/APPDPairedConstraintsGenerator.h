#pragma once
// Base of the paired constraint generators: the values of a first side
// (a product setting's values, the media of "QVPaperInfo", or the custom page
// size) declare under "excludes" which choices of other options they cannot
// be combined with, and each such pair becomes a UIConstraints pair. Each
// subclass is one table row: where the first side comes from and its default
// option keywords. Not registered.
//
// Entry keys: "option-1", "option-2" (override the row's option keywords),
// "setting-name" (overrides the row's product setting), "non-ui" and
// "comment" (as for the generic constraints generator; the comment goes on
// the first constraint made).

#include <vector>

#include "generators/APPDGenericConstraintsGenerator.h"

namespace ppdforge {

class APPDPairedConstraintsGenerator : public APPDGenericConstraintsGenerator {
 public:
  enum class FirstSide {
    kSetting,         // values of a product setting; choice keyword "name"
    kMedia,           // media of a media setting; choice keyword "PPDName"
    kCustomPageSize,  // choice "True"; exclusions under "customPageSizeExcludes"
  };

  struct Row {
    FirstSide side;
    const char* setting;  // default product setting (kSetting, kMedia)
    const char* option1;  // default first option keyword
    const char* option2;  // default second option keyword; empty: every key of "excludes"
  };

  // The custom page size's option keyword and choice.
  static constexpr const char* kCustomPageSizeKeyword = "CustomPageSize";
  static constexpr const char* kCustomPageSizeChoice = "True";

  // True when the first option (for the custom page size: the attribute of
  // that name) and the second option (non-UI: an attribute of that name)
  // exist in the document; with no fixed second option only the first counts.
  bool IsApplicable() const override;
  // For each first-side value whose choice the first option holds, in order,
  // for each second option, each excluded choice that option holds, in
  // order: the pair constraint. Missing choices and options are skipped.
  // False with "Invalid product description: ..." for malformed "excludes"
  // (before anything is added) or "Cannot add PPD constraint: *%@ %@ *%@ %@"
  // for a refused pair (code 1).
  bool Generate(AError* error) override;
  // "option-1" / "option-2" when not empty, else the row's keyword.
  AQVString GetFirstOptionID() const override;
  AQVString GetSecondOptionID() const override;
  // "setting-name" when not empty, else the row's setting.
  virtual AQVString GetFirstSideSettingName() const;

 protected:
  explicit APPDPairedConstraintsGenerator(const Row& row) : row_(row) {}

 private:
  struct FirstSideValue {
    AQVString choice;
    ADictionary excludes;
  };

  // The first-side values that declare exclusions, each checked to be a
  // dictionary from option keyword to an array of choice keywords.
  bool ReadFirstSide(std::vector<FirstSideValue>& values, AError* error) const;

  Row row_;
};

}  // namespace ppdforge
