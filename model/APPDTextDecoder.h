#pragma once
// Turns the byte strings of libcups's PPD records into valid UTF-8 text.
// libcups keeps most strings as they stand in the file, in its
// "LanguageEncoding", converts the human-readable texts of groups, options
// and choices to UTF-8, and by CUPS convention the "ll.Keyword" translation
// lines are UTF-8 whatever the file's encoding.

#include <memory>
#include <string>
#include <string_view>

#include "core/AQVString.h"

namespace ppdforge {

class APPDTextDecoder {
 public:
  enum class Kind {
    // As in the file: in the file's encoding.
    kRaw,
    // Converted to UTF-8 by libcups; bytes that are not valid UTF-8 are taken
    // as in the file's encoding.
    kConverted,
    // A translation line: UTF-8 when valid, else in the file's encoding
    // (unless that is UTF-8 itself).
    kTranslation,
  };

  // `languageEncoding` is the value of "LanguageEncoding", mapped as libcups
  // maps it: "ISOLatin1", "ISOLatin2", "ISOLatin5" (ISO-8859-5, as in
  // libcups), "JIS83-RKSJ", "MacStandard", "WindowsANSI"; any other value
  // means UTF-8. A file without the keyword (`declared` false) is ISOLatin1.
  APPDTextDecoder(std::string_view languageEncoding, bool declared);
  ~APPDTextDecoder();
  APPDTextDecoder(const APPDTextDecoder&) = delete;
  APPDTextDecoder& operator=(const APPDTextDecoder&) = delete;

  // The text of `bytes` (null reads as empty). Text that cannot be decoded
  // comes back with U+FFFD in place of the bad bytes, and the first such
  // string is remembered (see Failed).
  AQVString Decode(const char* bytes, Kind kind);

  // `decoder->Decode(bytes, kind)`, or without a decoder the bytes as UTF-8
  // (U+FFFD for bad bytes). For a human-readable text (`isText`), whose
  // hexadecimal <XX> strings libcups has decoded, every control character
  // is written back as <XX>, since a translation cannot hold it otherwise.
  static AQVString DecodeWith(APPDTextDecoder* decoder, const char* bytes, Kind kind,
                              bool isText = false);
  // Whether `keyword` is a translation line's "ll.Keyword" or
  // "ll_CC.Keyword"; then *language and *rest (when non-null) are its parts.
  static bool IsTranslationKeyword(std::string_view keyword, std::string_view* language = nullptr,
                                   std::string_view* rest = nullptr);

  // Whether some string could not be decoded; the first one, with every byte
  // outside 32..126 written as \xHH.
  bool Failed() const { return failed_; }
  const std::string& FailedText() const { return failedText_; }
  // The encoding's name as the file says it ("UTF-8" when it is UTF-8).
  const std::string& EncodingName() const { return encodingName_; }
  bool IsUTF8() const { return utf8_; }

 private:
  // Decodes from the file's encoding; false when a byte has no character.
  bool DecodeFromFileEncoding(std::string_view bytes, std::string& out);
  void Remember(std::string_view bytes);

  std::string encodingName_;
  bool utf8_ = true;
  bool latin1_ = false;
  struct Converter;
  std::unique_ptr<Converter> converter_;
  bool failed_ = false;
  std::string failedText_;
};

}  // namespace ppdforge
