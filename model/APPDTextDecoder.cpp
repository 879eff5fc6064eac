#include "model/APPDTextDecoder.h"

#include <unicode/ucnv.h>

#include <algorithm>
#include <cstdio>
#include <cstring>

namespace ppdforge {

namespace {

struct EncodingEntry {
  const char* ppdName;
  const char* icuName;
};

// libcups's own table (_ppdGetEncoding); "ISOLatin5" is ISO-8859-5 there.
constexpr EncodingEntry kEncodings[] = {
    {"ISOLatin1", "ISO-8859-1"},   {"ISOLatin2", "ISO-8859-2"}, {"ISOLatin5", "ISO-8859-5"},
    {"JIS83-RKSJ", "Shift_JIS"},   {"MacStandard", "macintosh"}, {"WindowsANSI", "windows-1252"},
};

}  // namespace

struct APPDTextDecoder::Converter {
  UConverter* converter = nullptr;
  ~Converter() {
    if (converter != nullptr) ucnv_close(converter);
  }
};

APPDTextDecoder::APPDTextDecoder(std::string_view languageEncoding, bool declared) {
  const char* icuName = nullptr;
  if (!declared) {
    encodingName_ = "ISOLatin1";
    icuName = "ISO-8859-1";
  } else {
    encodingName_ = std::string(languageEncoding);
    for (const EncodingEntry& entry : kEncodings) {
      if (languageEncoding == entry.ppdName) icuName = entry.icuName;
    }
  }
  if (icuName == nullptr) {
    if (declared && languageEncoding != "UTF-8") encodingName_ += " (read as UTF-8)";
    return;
  }
  utf8_ = false;
  latin1_ = std::strcmp(icuName, "ISO-8859-1") == 0;
  if (latin1_) return;
  UErrorCode status = U_ZERO_ERROR;
  UConverter* converter = ucnv_open(icuName, &status);
  if (U_FAILURE(status) || converter == nullptr) {
    // Without ICU's table the bytes are still safe to read as Latin-1.
    latin1_ = true;
    return;
  }
  ucnv_setToUCallBack(converter, UCNV_TO_U_CALLBACK_STOP, nullptr, nullptr, nullptr, &status);
  converter_ = std::make_unique<Converter>();
  converter_->converter = converter;
}

APPDTextDecoder::~APPDTextDecoder() = default;

bool APPDTextDecoder::DecodeFromFileEncoding(std::string_view bytes, std::string& out) {
  out.clear();
  if (latin1_) {
    out.reserve(bytes.size() * 2);
    for (const char byte : bytes) {
      const auto code = static_cast<unsigned char>(byte);
      if (code < 0x80) {
        out += byte;
      } else {
        out += static_cast<char>(0xC0 | (code >> 6));
        out += static_cast<char>(0x80 | (code & 0x3F));
      }
    }
    return true;
  }
  if (!converter_) return false;
  std::u16string units(bytes.size() * 2 + 1, u'\0');
  UErrorCode status = U_ZERO_ERROR;
  ucnv_resetToUnicode(converter_->converter);
  const int32_t length =
      ucnv_toUChars(converter_->converter, units.data(), static_cast<int32_t>(units.size()),
                    bytes.data(), static_cast<int32_t>(bytes.size()), &status);
  if (U_FAILURE(status)) return false;
  units.resize(static_cast<std::size_t>(length));
  const std::optional<AQVString> text = AQVString::FromUTF16(units);
  if (!text) return false;
  out = text->UTF8();
  return true;
}

void APPDTextDecoder::Remember(std::string_view bytes) {
  if (failed_) return;
  failed_ = true;
  for (const char byte : bytes) {
    const auto code = static_cast<unsigned char>(byte);
    if (code >= 32 && code <= 126) {
      failedText_ += byte;
    } else {
      char escaped[8];
      std::snprintf(escaped, sizeof(escaped), "\\x%02X", code);
      failedText_ += escaped;
    }
  }
}

AQVString APPDTextDecoder::DecodeWith(APPDTextDecoder* decoder, const char* bytes, Kind kind,
                                      bool isText) {
  AQVString text = decoder != nullptr ? decoder->Decode(bytes, kind)
                                      : (bytes != nullptr ? AQVString(bytes) : AQVString());
  if (!isText) return text;
  const std::string& utf8 = text.UTF8();
  const auto isControl = [](char byte) { return static_cast<unsigned char>(byte) < 32; };
  if (std::none_of(utf8.begin(), utf8.end(), isControl)) return text;
  std::string encoded;
  for (const char byte : utf8) {
    if (!isControl(byte)) {
      encoded += byte;
      continue;
    }
    static constexpr char kHex[] = "0123456789ABCDEF";
    encoded += '<';
    encoded += kHex[static_cast<unsigned char>(byte) >> 4];
    encoded += kHex[byte & 0x0F];
    encoded += '>';
  }
  return AQVString(std::move(encoded));
}

bool APPDTextDecoder::IsTranslationKeyword(std::string_view keyword, std::string_view* language,
                                          std::string_view* rest) {
  const auto isLower = [](char c) { return c >= 'a' && c <= 'z'; };
  const auto isAlnum = [](char c) {
    return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || (c >= '0' && c <= '9');
  };
  if (keyword.size() < 4 || !isLower(keyword[0]) || !isLower(keyword[1])) return false;
  std::size_t dot = 2;
  if (keyword[2] == '_') {
    dot = 3;
    while (dot < keyword.size() && isAlnum(keyword[dot])) ++dot;
    if (dot == 3) return false;
  }
  if (dot + 1 >= keyword.size() || keyword[dot] != '.') return false;
  if (language != nullptr) *language = keyword.substr(0, dot);
  if (rest != nullptr) *rest = keyword.substr(dot + 1);
  return true;
}

AQVString APPDTextDecoder::Decode(const char* bytes, Kind kind) {
  if (bytes == nullptr || *bytes == '\0') return AQVString();
  const std::string_view view(bytes);
  const bool valid = IsValidUTF8(view);
  if (valid && (utf8_ || kind != Kind::kRaw)) return AQVString(view);
  if (!utf8_) {
    std::string decoded;
    if (DecodeFromFileEncoding(view, decoded)) return AQVString(std::move(decoded));
  }
  Remember(view);
  // The trusted constructor puts U+FFFD in place of the bad bytes.
  return AQVString(view);
}

}  // namespace ppdforge
