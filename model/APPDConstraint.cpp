#include "model/APPDConstraint.h"

#pragma GCC diagnostic push
#pragma GCC diagnostic ignored "-Wdeprecated-declarations"
#include <cups/ppd.h>
#pragma GCC diagnostic pop

#include "model/APPDTextDecoder.h"

#include "core/ASharedObject.h"
#include "model/APPD.h"
#include "model/APPDStatement.h"
#include "model/RKPPDConstants.h"

namespace ppdforge {

namespace {

constexpr std::size_t kMaxKeywordLength = 41;

bool Failed(const AError& local, AError* error) {
  if (local.code == 0) return false;
  if (error != nullptr) *error = local;
  return true;
}

// Pads with empty strings (not nulls) so that the padding compares and
// writes as "any choice".
void SetStringAt(AArray& array, const AQVString& value, std::size_t index) {
  while (array.Count() < index) array.Append(AQVString());
  if (index == array.Count()) {
    array.Append(value);
  } else {
    array.Set(index, value);
  }
}

// "*OPTION [CHOICE] *OPTION [CHOICE]" of one pair in the given order.
AQVString PairValue(const AQVString& firstOption, const AQVString& firstChoice,
                    const AQVString& secondOption, const AQVString& secondChoice) {
  AQVString value = AQVString(kRKPPDAsterisk) + firstOption;
  if (!firstChoice.IsEmpty()) value += " " + firstChoice;
  value += " *" + secondOption;
  if (!secondChoice.IsEmpty()) value += " " + secondChoice;
  return value;
}

}  // namespace

APPDConstraint::APPDConstraint(const AArray& options, const AArray& choices,
                               const AQVString& resolver, bool cupsUIConstraint, bool nonUI,
                               const AQVString& comment)
    : APPDCommentable(comment), options_(options), choices_(choices), resolver_(resolver),
      cupsUIConstraint_(cupsUIConstraint), nonUI_(nonUI) {}

APPDConstraint::APPDConstraint(const APPDConstraint& other)
    : IPPDConstraint(), APPDCommentable(other), options_(other.options_),
      choices_(other.choices_), resolver_(other.resolver_),
      cupsUIConstraint_(other.cupsUIConstraint_), nonUI_(other.nonUI_) {}

APPDConstraint* APPDConstraint::Clone() const { return CreateSharedObject<APPDConstraint>(*this); }

APPDCommentable* APPDConstraint::QueryPPDCommentable() const {
  auto* self = const_cast<APPDConstraint*>(this);
  self->Retain();
  return self;
}

void APPDConstraint::Changed() {
  if (auto* document = dynamic_cast<APPD*>(ppd_)) document->InvalidateConstraintIndex();
}

void APPDConstraint::SetOptions(const AArray& options) {
  options_ = options;
  Changed();
}

void APPDConstraint::SetChoices(const AArray& choices) {
  choices_ = choices;
  Changed();
}

void APPDConstraint::SetResolver(const AQVString& resolver) {
  resolver_ = resolver;
  Changed();
}

void APPDConstraint::SetCUPSUIConstraint(bool value) {
  cupsUIConstraint_ = value;
  Changed();
}

void APPDConstraint::SetNonUI(bool value) {
  nonUI_ = value;
  Changed();
}

AQVString APPDConstraint::GetOptionAtIndex(std::size_t index) const {
  return options_.GetStringAt(index);
}

void APPDConstraint::SetOptionAtIndex(const AQVString& value, std::size_t index) {
  SetStringAt(options_, value, index);
  Changed();
}

AQVString APPDConstraint::GetChoiceAtIndex(std::size_t index) const {
  return choices_.GetStringAt(index);
}

void APPDConstraint::SetChoiceAtIndex(const AQVString& value, std::size_t index) {
  SetStringAt(choices_, value, index);
  Changed();
}

bool APPDConstraint::operator==(const IPPDConstraint& other) const {
  return options_ == other.GetOptions() && choices_ == other.GetChoices() &&
         resolver_ == other.GetResolver() && cupsUIConstraint_ == other.IsCUPSUIConstraint() &&
         nonUI_ == other.IsNonUI();
}

bool APPDConstraint::IsValid() const {
  const std::size_t count = options_.Count();
  if (count < 2 || choices_.Count() != count) return false;
  for (std::size_t i = 0; i < count; ++i) {
    const AQVString option = options_.GetStringAt(i);
    if (option.IsEmpty() || option.Length() > kMaxKeywordLength) return false;
    if (choices_.GetStringAt(i).Length() > kMaxKeywordLength) return false;
  }
  return resolver_.Length() <= kMaxKeywordLength;
}

AQVString APPDConstraint::GetStringRepresentation(AError* error) const {
  if (!IsValid()) return AQVString();

  AError local;
  AQVString text;
  if (cupsUIConstraint_) {
    text = APPDStatement("cupsUIConstraints", resolver_, AQVString(),
                         MakeValueFromOptionsAndChoices(options_, choices_), kPPDQuotedValue,
                         AQVString())
               .GetStringRepresentation(&local);
    if (Failed(local, error)) return AQVString();
  } else {
    const char* keyword = nonUI_ ? "NonUIConstraints" : "UIConstraints";
    const AQVString option0 = GetOptionAtIndex(0);
    const AQVString choice0 = GetChoiceAtIndex(0);
    const AQVString option1 = GetOptionAtIndex(1);
    const AQVString choice1 = GetChoiceAtIndex(1);
    text = APPDStatement(keyword, AQVString(), AQVString(),
                         PairValue(option0, choice0, option1, choice1), kPPDStringValue,
                         AQVString())
               .GetStringRepresentation(&local);
    if (Failed(local, error)) return AQVString();
    if (!text.IsEmpty() && (!choice0.IsEmpty() || !choice1.IsEmpty())) {
      const AQVString reverse = APPDStatement(keyword, AQVString(), AQVString(),
                                              PairValue(option1, choice1, option0, choice0),
                                              kPPDStringValue, AQVString())
                                    .GetStringRepresentation(&local);
      if (Failed(local, error)) return text;
      if (!reverse.IsEmpty()) {
        text += kRKPPDNewLine;
        text += reverse;
      }
    }
  }

  const AQVString comment = APPDCommentable::GetStringRepresentation(&local);
  if (Failed(local, error)) return AQVString();
  if (comment.IsEmpty() || text.IsEmpty()) return text;
  return comment + kRKPPDNewLine + text;
}

IPPDConstraint* IPPDConstraint::Create(const AArray& options, const AArray& choices,
                                       const AQVString& resolver, bool cupsUIConstraint,
                                       bool nonUI, const AQVString& comment) {
  return CreateSharedObject<APPDConstraint>(options, choices, resolver, cupsUIConstraint, nonUI,
                                            comment);
}

AQVString IPPDConstraint::MakeValueFromOptionsAndChoices(const AArray& options,
                                                         const AArray& choices) {
  AQVString value;
  if (options.Count() != choices.Count()) return value;
  for (std::size_t i = 0; i < options.Count(); ++i) {
    if (!value.IsEmpty()) value += kRKPPDSpace;
    value += kRKPPDAsterisk;
    value += options.GetStringAt(i);
    const AQVString choice = choices.GetStringAt(i);
    if (!choice.IsEmpty()) {
      value += kRKPPDSpace;
      value += choice;
    }
  }
  return value;
}

IPPDConstraint* IPPDConstraint::Create(const ppd_const_s* record, APPDTextDecoder* decoder) {
  AArray options;
  AArray choices;
  if (record != nullptr) {
    options.Append(APPDTextDecoder::DecodeWith(decoder, record->option1, APPDTextDecoder::Kind::kRaw));
    options.Append(APPDTextDecoder::DecodeWith(decoder, record->option2, APPDTextDecoder::Kind::kRaw));
    choices.Append(APPDTextDecoder::DecodeWith(decoder, record->choice1, APPDTextDecoder::Kind::kRaw));
    choices.Append(APPDTextDecoder::DecodeWith(decoder, record->choice2, APPDTextDecoder::Kind::kRaw));
  }
  return Create(options, choices, AQVString(), false, false, AQVString());
}

}  // namespace ppdforge
