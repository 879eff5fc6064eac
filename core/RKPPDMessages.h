#pragma once
// The catalogue of every error message the library makes, with its code.
// Texts are fixed (misspellings included: tools and tests match them).
// Placeholders are filled with AFormatter::FormatTrusted.

namespace ppdforge::messages {

struct Message {
  long code;
  const char* text;
};

// Façade and engine.
inline constexpr Message kCannotCreateGeneratorObject{1, "Can't create PPD generator object."};
inline constexpr Message kGeneratorObjectNotCreated{1, "PPD generator object is not created."};
inline constexpr Message kPPDObjectsNotCreated{1, "PPD objects are not created."};
inline constexpr Message kProductInfoNotAvailable{2, "Product info is not available."};
inline constexpr Message kNoAttributesDescription{3, "Cannot create PPD attributes XML description"};
inline constexpr Message kCannotCreatePageSizeGenerator{1, "Cannot create page size PPD generator"};
inline constexpr Message kNoOptionsDescription{3, "Cannot create PPD options XML description"};
// The resolver phase reports the constraints text too; deliberate.
inline constexpr Message kNoResolversDescription{3, "Cannot create PPD constraints XML description"};
inline constexpr Message kNoConstraintsDescription{3, "Cannot create PPD constraints XML description"};
inline constexpr Message kUnknownGeneratorClass{1, "Cannot create PPD generator with class name: %@"};

// Object generators.
inline constexpr Message kCannotAddAttributeFromArray{1, "Cannot add attribute: %@ %@: %@"};
inline constexpr Message kCannotAddAttribute{1, "Cannot add PPD attribute: *%@ %@/%@: \"%@\""};
inline constexpr Message kCannotAddGroup{1, "Cannot add PPD group: %@"};
inline constexpr Message kCannotAddOption{1, "Cannot add PPD option: %@: %@"};
inline constexpr Message kCannotAddChoice{1, "Cannot add PPD choice %@ to option %@"};
inline constexpr Message kCannotDetermineChoices{1, "Cannot determine description of PPD choices in option %@"};
inline constexpr Message kCannotAddPageSize{1, "Cannot add PPD page size: %@: %@"};
inline constexpr Message kCannotAddPageRegion{1, "Cannot add PPD page region: %@: %@"};
inline constexpr Message kCannotAddPairConstraint{1, "Cannot add PPD constraint: *%@ %@ *%@ %@"};
inline constexpr Message kCannotAddConstraint{1, "Cannot add PPD constraint."};
inline constexpr Message kCannotAddResolver{1, "Can not add CUPS UI Resolver with name %s."};

// Product-specific attribute and constraint generators.
inline constexpr Message kInvalidProductData{1, "Invalid product description: %@ must be %@"};
inline constexpr Message kCannotFormatAttributeValue{1, "Cannot format the value of PPD attribute *%@ with \"%@\": %@"};
// A description's "choice-generic-code" that does not fit the values it is
// filled with: choice, option, the format, and what does not fit.
inline constexpr Message kCannotFormatChoiceCode{1, "Cannot make the code of PPD choice %@ in option %@: choice-generic-code \"%@\" does not fit: %@"};

// Statement syntax (code 4).
inline constexpr Message kMissingMainKeyword{4, "Missing  main keyword"};
inline constexpr Message kMainKeywordTooLong{4, "Main keyword is longer then the maximum allowed (40 characters): %@"};
inline constexpr Message kMainKeywordInvalid{4, "Main keyword contains invalid characters: %@"};
inline constexpr Message kOptionKeywordTooLong{4, "Option keyword is longer then the maximum allowed (40 characters): %@"};
inline constexpr Message kOptionKeywordInvalid{4, "Option keyword contains invalid characters: %@"};
inline constexpr Message kTranslationTooLong{4, "Translation string is longer then the maximum allowed (80 characters): %@"};
inline constexpr Message kTranslationInvalid{4, "Translation keyword contains invalid characters: %@"};
inline constexpr Message kStringValueBadStart{4, "String value: %@ begins with invalid character: %@"};
inline constexpr Message kValueInvalid{4, "Value contains invalid characters: %@"};
inline constexpr Message kOptionKeywordAbsent{4, "Option keyword is absent for translation string: %@"};
inline constexpr Message kValueEmptyForTranslation{4, "Value is empty for value translation string: %@"};
inline constexpr Message kSymbolValueTranslation{4, "Symbol value: %@ cannot have translation string: %@"};
inline constexpr Message kLineTooLong{4, "Line longer then the maximum allowed: 255 characters in statement: %@"};
inline constexpr Message kCommentLineTooLong{4, "PPDGeneration error: Comment contains too long line:"};


// Product description files (code 5, same domain): the file is named first,
// then the key path, keys joined by dots with array indices in brackets
// (options.QVPaperInfo.values[2].PPDName).
// File, then the reason: one of the three below, or the property-list
// reader's own ("the data is not a property list" ...).
inline constexpr Message kProductFileUnreadable{5, "%@: cannot read the product description: %@"};
inline constexpr const char* kProductFileMissing = "no such file";
inline constexpr const char* kProductFileIsDirectory = "it is a directory";
inline constexpr const char* kProductFileNotReadable = "the file cannot be read";
inline constexpr Message kProductRootNotDictionary{5, "%@: the root is %@, expected a dictionary"};
// File, key path, the type found ("a string"), the type expected.
inline constexpr Message kProductWrongType{5, "%@: %@ is %@, expected %@"};
// File, key path of the dictionary, the missing key.
inline constexpr Message kProductMissingKey{5, "%@: %@: missing \"%@\""};
// File, key path, count found, count expected.
inline constexpr Message kProductWrongCount{5, "%@: %@ has %d elements, expected %d"};
// Not an error: an unknown root key (file, key) is reported as a warning.
inline constexpr const char* kProductUnknownKeyWarning = "%@: unknown key \"%@\"";

// Reading PPD files (code 6, same domain).
// The reason why libcups cannot be used (it names the library and the package).
inline constexpr Message kCupsLibraryUnavailable{6, "cannot read PPD files: %@"};
// File, then the reason: kPPDFileMissing, kPPDFileIsDirectory or the system's.
inline constexpr Message kPPDFileUnreadable{6, "%@: cannot read the PPD file: %@"};
inline constexpr const char* kPPDFileMissing = "no such file";
inline constexpr const char* kPPDFileIsDirectory = "it is a directory";
// File, libcups's error text, line number.
inline constexpr Message kPPDFileRejected{6, "%@: libcups rejects the PPD file: %@ on line %d"};
// File, its LanguageEncoding, the text (bytes outside 32..126 as \xHH).
inline constexpr Message kPPDTextNotDecodable{6, "%@: text that is not valid in the file's LanguageEncoding %@: \"%@\""};
// File: the document could not be built (out of memory).
inline constexpr Message kPPDDocumentNotCreated{6, "%@: the PPD document cannot be created"};

}  // namespace ppdforge::messages

#include <vector>

#include "core/AError.h"
#include "core/AFormatter.h"

namespace ppdforge::messages {

// Stores the catalogue message `message`, filled with `arguments`, in *error
// (when non-null) with its code and the library's domain. Returns false.
inline bool Report(AError* error, const Message& message,
                   const std::vector<AFormatter::Argument>& arguments = {}) {
  if (error == nullptr) return false;
  return SetError(error, message.code, AFormatter::FormatTrusted(message.text, arguments));
}

}  // namespace ppdforge::messages
