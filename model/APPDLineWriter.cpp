#include "model/APPDLineWriter.h"

#include <vector>

#include "model/APPDLocalizable.h"
#include "model/APPDStatement.h"

namespace ppdforge {

bool APPDLineWriter::AppendTranslationLines(std::string& result, const APPDLocalizable& object,
                                            std::string_view keyword, std::string_view id,
                                            const std::vector<AQVString>& languages,
                                            AError* error) {
  if (languages.empty()) return true;
  AError local;
  // Runs for every object of a document: the texts reuse one list per thread.
  thread_local std::vector<AQVString> texts;
  object.GetLocalizedStrings(languages, texts);
  if (APPDStatement::AppendTranslationLines(result, keyword, id, languages, texts, &local)) return true;
  Failed(local, error);
  return false;
}

}  // namespace ppdforge
