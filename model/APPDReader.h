#pragma once
// Builds a document from a PPD file that libcups has parsed, and normalises
// it so that writing it gives a file that libcups reads back with the same
// options, choices, defaults, groups, paper sizes, constraints and
// translations. docs/reading-ppd.md explains each step.

#include <string>

#include "core/AError.h"
#include "core/AQVString.h"
#include "model/IPPD.h"

struct ppd_file_s;

namespace ppdforge {

class APPD;

class APPDReader {
 public:
  // The document of a parsed PPD file, normalised; count 1, owned by the
  // caller. Null for a null file, and null with *error set (code 6) when a
  // text of the file is not valid in its "LanguageEncoding" (a UTF-8 file
  // with bytes that are not UTF-8) or the document cannot be made.
  // `sourceName` names the file in messages.
  static IPPD* Create(const ppd_file_s* file, AError* error,
                      const AQVString& sourceName = AQVString());
  // Opens `path` (plain or gzip-compressed) with libcups, which is loaded on
  // first use, and returns its normalised document (count 1, owned by the
  // caller). Null with *error set (code 6) when libcups cannot be loaded,
  // the file does not exist or cannot be read, libcups rejects it (its own
  // message and line number), or Create fails. `strict` selects libcups's
  // strict conformance instead of the relaxed one that CUPS itself uses.
  static IPPD* Read(const AQVString& path, AError* error, bool strict = false);

  // The normalisation, in the order Create runs it; each step works on a
  // document built from a file and may be run again without changing it.

  // Replaces every "PPD-Adobe" by one "PPD-Adobe" "4.3" carrying the fixed
  // header comment, and puts it first.
  static void NormaliseHeader(APPD& ppd);
  // Drops the "Default..." attributes that the document writes itself: those
  // of its options, and "DefaultImageableArea"/"DefaultPaperDimension" when
  // it has a "PageSize" option.
  static void RemoveDefaultAttributes(APPD& ppd);
  // Drops what libcups adds for custom values: the "Custom" choice of an
  // option that has a "CustomOPTION True" attribute (PageSize and PageRegion
  // for custom page sizes) and the placeholder paper size "Custom".
  // Gives a document with paper sizes but no group "General" an empty one,
  // which is where the paper-size blocks are written.
  static void PostprocessCustomPaperSizes(APPD& ppd);
  // Names each paper size after the text of the "PageSize" choice with its ID.
  static void FillPaperSizeNames(APPD& ppd);
  // Turns translation lines ("ll.Translation", "ll.OPTION", "ll.NAME",
  // "ll.ImageableArea", "ll.cupsIPPReason" ...) of a language of
  // "cupsLanguages" into explicit translations of the objects they belong
  // to, and "cupsIPPReason" attributes with "text:" messages into IPP reasons.
  // Lines that belong to no object stay as verbatim attributes. The name
  // "cupsIPPReason" goes last in the order, where the document writes it.
  static void FillLocalizationCaches(APPD& ppd);
  // Turns "UIConstraints", "NonUIConstraints" and "cupsUIConstraints"
  // attributes into constraints, and keeps one constraint of each pair of
  // mirrored pairwise constraints (the line and its reversed line).
  static void ObtainConstraintsFromAttributes(APPD& ppd);
  // Makes "LanguageEncoding" say "UTF-8" when the written file would hold
  // other than ASCII outside its translation lines (which CUPS reads as UTF-8
  // anyway); otherwise leaves it as it is.
  static void ChooseLanguageEncoding(APPD& ppd);

  // Whether `text` (a whole PPD) has a byte above 126 on a line that is not a
  // translation line ("*ll.Keyword" or "*ll_CC.Keyword"); continuation lines
  // of quoted values belong to the statement that opened them.
  static bool HasNonASCIIBaseText(const std::string& text);

  // The comment of "PPD-Adobe": the fixed header block.
  static const char* const kHeaderComment;
};

}  // namespace ppdforge
