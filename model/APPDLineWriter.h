#pragma once
// Helpers for objects whose PPD text is made of the texts of other objects
// and statements, line by line, passing on the first error.

#include <string>
#include <string_view>
#include <vector>

#include "core/AError.h"
#include "core/AQVString.h"
#include "model/RKPPDConstants.h"

namespace ppdforge {

class APPDLocalizable;

class APPDLineWriter {
 public:
  // True when `local` holds an error, which is then copied to *error (when
  // non-null); false otherwise.
  static bool Failed(const AError& local, AError* error) {
    if (local.code == 0) return false;
    if (error != nullptr) *error = local;
    return true;
  }

  // Appends the text of `object` (anything with GetStringRepresentation)
  // and an LF, unless the text is empty. False with *error set when the
  // object fails; `result` then stays as it was.
  template <class Object>
  static bool AppendLine(AQVString& result, const Object& object, AError* error) {
    AError local;
    const AQVString text = object.GetStringRepresentation(&local);
    if (Failed(local, error)) return false;
    if (!text.IsEmpty()) {
      result += text;
      result += kRKPPDNewLine;
    }
    return true;
  }

  // AppendLine for each object of `objects` (pointers) in order; false at
  // the first that fails, with *error set and the lines before it appended.
  template <class Objects>
  static bool AppendLines(AQVString& result, const Objects& objects, AError* error) {
    for (const auto* object : objects) {
      if (!AppendLine(result, *object, error)) return false;
    }
    return true;
  }

  // For each language in order: an LF and the line
  // *LANGUAGE.KEYWORD ID/TEXT: "" with the text of `object` in that
  // language. At the first line that breaks the statement rules: false,
  // *error set, and `result` without that line and its LF.
  static bool AppendTranslationLines(std::string& result, const APPDLocalizable& object,
                                     std::string_view keyword, std::string_view id,
                                     const std::vector<AQVString>& languages, AError* error);
};

}  // namespace ppdforge
