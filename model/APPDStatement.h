#pragma once
// The one place where a single PPD statement is written and checked:
// *MAIN OPTION/Translation: VALUE/ValueTranslation
// with escaping, quoting by value type, wrapping of long quoted values with a
// closing *End line, and validation against the PPD limits (40-byte keywords,
// 80-byte translations, 255-byte lines, per-type character sets).

#include <string>
#include <string_view>
#include <vector>

#include "core/AError.h"
#include "core/AQVString.h"
#include "model/PPDValueType.h"

namespace ppdforge {

class APPDStatement {
 public:
  APPDStatement(const AQVString& mainKeyword, const AQVString& optionKeyword,
                const AQVString& optionTranslation, const AQVString& value,
                PPDValueType valueType, const AQVString& valueTranslation);
  virtual ~APPDStatement() = default;

  AQVString GetMainKeyword() const { return mainKeyword_; }
  AQVString GetOptionKeyword() const { return optionKeyword_; }
  // After a build these return the escaped text (the escaping is in place).
  AQVString GetOptionTranslation() const { return optionTranslation_; }
  AQVString GetValue() const { return value_; }
  PPDValueType GetValueType() const { return valueType_; }
  AQVString GetValueTranslation() const { return valueTranslation_; }

  // Each setter replaces the field and drops the cached text.
  void SetMainKeyword(const AQVString& keyword);
  void SetOptionKeyword(const AQVString& keyword);
  void SetOptionTranslation(const AQVString& translation);
  void SetValue(const AQVString& value);
  void SetValueType(PPDValueType type);
  void SetValueTranslation(const AQVString& translation);

  // The statement's text (no final line end), or an empty text with *error
  // set (code 4) when it breaks a rule.
  AQVString GetStringRepresentation(AError* error) const;
  // Runs every check in order; the first failure sets *error (code 4).
  bool IsValid(AError* error) const;

  // The text that a statement of these parts gives, appended to `out`
  // without making the statement: true when valid, else false with *error
  // set (code 4, the same message) and `out` unchanged. For writers that
  // make many lines.
  static bool Append(std::string& out, std::string_view mainKeyword, std::string_view optionKeyword,
                     std::string_view optionTranslation, std::string_view value, PPDValueType valueType,
                     std::string_view valueTranslation, AError* error);
  // For each language in order, a line end and the translation statement
  // "LANGUAGE.keyword optionKeyword/TEXT: """ with the text of the same
  // index, each as Append makes and checks it (the keywords are checked
  // once for all). False at the first that fails, with *error set as Append
  // sets it and `out` ending before that line end.
  static bool AppendTranslationLines(std::string& out, std::string_view keyword, std::string_view optionKeyword,
                                     const std::vector<AQVString>& languages, const std::vector<AQVString>& texts,
                                     AError* error);

  // The comment rule shared with APPDCommentable: `comment` as "*% " lines,
  // or an empty text with *error set when a trimmed line has 253 or more
  // characters.
  static AQVString CommentLines(const AQVString& comment, AError* error);

  // Whether every UTF-8 byte of `text` is at least `lowest` or one of TAB,
  // LF, CR, space, none is above `highest`, and no character of `invalid` occurs.
  static bool IsValidCharacters(const AQVString& text, unsigned lowest, unsigned highest,
                                std::string_view invalid);
  // The translation test of the main line: the character test with bytes
  // 32..126 (so TAB passes too), no LF, CR or ":".
  static bool IsPlainMainTranslation(const AQVString& text);

  // The angle-bracket escaping, exposed for tests and for objects that escape
  // their own texts: a "<" or ">" that is not part of a valid tag becomes
  // "<3C>" or "<3E>".
  static void FindAndReplaceAngleOpenBrackets(AQVString& text);
  static void FindAndReplaceAngleCloseBrackets(AQVString& text);
  static bool IsValidPPDTag(const AQVString& text);

 private:
  void BuildStringRepresentationIfNeeded() const;
  bool IsValidMainKeyword(AError* error) const;
  bool IsValidOptionKeyword(AError* error) const;
  bool IsValidTranslationString(bool isOptionTranslation, AError* error) const;
  bool IsValidValue(AError* error) const;
  bool IsValidLineLength(AError* error) const;
  static std::size_t FindTagStart(const std::u16string& text, std::size_t position);
  static std::size_t FindTagEnd(const std::u16string& text, std::size_t position);
  static void DivideString(const AQVString& text, const AQVString& separators,
                           std::vector<AQVString>& pieces);

  AQVString mainKeyword_;
  // Mutable: building escapes the stored translations in place, which is
  // visible through the getters afterwards.
  AQVString optionKeyword_;
  mutable AQVString optionTranslation_;
  AQVString value_;
  PPDValueType valueType_;
  mutable AQVString valueTranslation_;
  mutable AQVString representation_;
};

}  // namespace ppdforge
