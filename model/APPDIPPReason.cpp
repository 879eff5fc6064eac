#include "model/APPDIPPReason.h"

#include "core/ASharedObject.h"
#include "model/APPDStatement.h"

namespace ppdforge {

namespace {

constexpr const char* kTextScheme = "text:";
constexpr std::size_t kSplitBufferSize = 186;
// A URI of this many bytes or more is split over continuation lines.
constexpr std::size_t kSplitThreshold = 187;

const std::vector<AQVString>& ProhibitedCharacters() {
  static const std::vector<AQVString> characters = {
      "%", ";", "/", "?", ":", "@", "&", "=", "+", "$", ",", "<", ">",
      "#", " ", "\"", "\r", "\n", "\t", "[", "]", "*", "!", "'", "(", ")"};
  return characters;
}

}  // namespace

APPDIPPReason* APPDIPPReason::Create(const AQVString& name, const AQVString& spec,
                                     const AQVString& text, const AQVString& value,
                                     const AQVString& comment) {
  return CreateSharedObject<APPDIPPReason>(name, spec, text, value, comment);
}

APPDIPPReason::APPDIPPReason(const AQVString& name, const AQVString& spec, const AQVString& text,
                             const AQVString& value, const AQVString& comment)
    : APPDAttribute(name, spec, text, value, kPPDInvocationValue, comment),
      prohibitedChars_(ProhibitedCharacters()) {}

APPDIPPReason::APPDIPPReason(const APPDIPPReason& other)
    : APPDAttribute(other), prohibitedChars_(other.prohibitedChars_) {}

IPPDAttribute* APPDIPPReason::Clone() const {
  return CreateSharedObject<APPDIPPReason>(static_cast<const APPDIPPReason&>(*this));
}

AQVString APPDIPPReason::GetTextURIFromString(const AQVString& text) const {
  if (text.IsEmpty()) return AQVString();
  return kTextScheme + text.EscapeCharacters(prohibitedChars_);
}

AQVString APPDIPPReason::GetSplittedString(const AQVString& uri) const {
  const std::vector<AQVString> pieces = uri.SplitByBufferSize(kSplitBufferSize);
  if (pieces.empty()) return uri;
  std::string out = pieces.front().UTF8();
  for (std::size_t i = 1; i < pieces.size(); ++i) {
    out += '\n';
    out += kTextScheme;
    out += pieces[i].UTF8();
  }
  return AQVString(std::move(out));
}

AQVString APPDIPPReason::GetStringRepresentationForLanguage(bool isMainLanguage,
                                                            const AQVString& language,
                                                            AError* error) const {
  AQVString message = GetLocalizedString(language);
  if (message.IsEmpty()) message = GetValue();
  AQVString uri = GetTextURIFromString(message);
  if (uri.ByteLength() >= kSplitThreshold) uri = GetSplittedString(uri);
  const AQVString keyword = isMainLanguage ? GetName() : language + "." + GetName();
  const APPDStatement statement(keyword, GetSpec(), AQVString(), uri, kPPDQuotedValue,
                                AQVString());
  return statement.GetStringRepresentation(error);
}

AQVString APPDIPPReason::GetStringRepresentation(AError* error) const {
  AQVString mainLanguage;
  std::vector<AQVString> languages;
  GetLanguages(mainLanguage, languages);

  const AQVString mainLine = GetStringRepresentationForLanguage(true, mainLanguage, error);
  if (mainLine.IsEmpty()) return AQVString();

  const AQVString& comment = GetComment();
  const AQVString commentLines = APPDStatement::CommentLines(comment, error);
  if (!comment.IsEmpty() && commentLines.IsEmpty()) return AQVString();

  std::string out;
  if (!commentLines.IsEmpty()) {
    out = commentLines.UTF8();
    out += '\n';
  }
  out += mainLine.UTF8();
  for (const AQVString& language : languages) {
    const AQVString line = GetStringRepresentationForLanguage(false, language, error);
    if (line.IsEmpty()) break;
    out += '\n';
    out += line.UTF8();
  }
  return AQVString(std::move(out));
}

}  // namespace ppdforge
