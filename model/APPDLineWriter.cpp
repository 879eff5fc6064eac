#include "model/APPDLineWriter.h"

#include <cstring>

#include "model/APPDLocalizable.h"
#include "model/APPDStatement.h"

namespace ppdforge {

bool APPDLineWriter::AppendTranslationLines(std::string& result, const APPDLocalizable& object,
                                            std::string_view keyword, std::string_view id,
                                            const std::vector<AQVString>& languages,
                                            AError* error) {
  AError local;
  std::string fullKeyword;
  std::vector<AQVString> texts;
  object.GetLocalizedStrings(languages, texts);
  for (std::size_t i = 0; i < languages.size(); ++i) {
    const AQVString& language = languages[i];
    // LANGUAGE.KEYWORD, each part copied once.
    const std::string& prefix = language.UTF8();
    fullKeyword.resize(prefix.size() + 1 + keyword.size());
    char* out = fullKeyword.data();
    std::memcpy(out, prefix.data(), prefix.size());
    out[prefix.size()] = '.';
    std::memcpy(out + prefix.size() + 1, keyword.data(), keyword.size());
    const AQVString& text = texts[i];
    result += kRKPPDNewLine;
    if (!APPDStatement::Append(result, fullKeyword, id, text.UTF8(), std::string_view(),
                               kPPDQuotedValue, std::string_view(), &local)) {
      result.pop_back();
      Failed(local, error);
      return false;
    }
  }
  return true;
}

}  // namespace ppdforge
