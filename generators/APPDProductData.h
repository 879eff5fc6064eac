#pragma once
// Typed reading of the product's "product" dictionary for the attribute
// generators. A key that is absent, an empty string or an empty array is not
// there (its generator is not applicable); a key of the wrong type is an input
// error that names the key with its path ("product.presets[1].settings").

#include <cstddef>
#include <optional>

#include "core/AArray.h"
#include "core/ADictionary.h"
#include "core/AError.h"
#include "engine/IPPDGenerator.h"

namespace ppdforge {

class APPDProductData {
 public:
  enum class State { kAbsent, kPresent, kInvalid };

  // The path that errors give for the dictionary itself.
  static constexpr const char* kRootPath = "product";

  // The engine's product's "product" dictionary; nothing without engine,
  // product or dictionary.
  static std::optional<ADictionary> Load(const IPPDGenerator* generator);

  // The value of `key` in `dictionary` (whose own path is `path`) as the
  // type asked for. kInvalid stores "Invalid product description: PATH.KEY
  // must be ..." (code 1) in *error when non-null; kAbsent leaves `out` as it was.
  static State GetString(const ADictionary& dictionary, const AQVString& key, const AQVString& path,
                         AQVString& out, AError* error);
  static State GetArray(const ADictionary& dictionary, const AQVString& key, const AQVString& path,
                        AArray& out, AError* error);
  static State GetDictionary(const ADictionary& dictionary, const AQVString& key,
                             const AQVString& path, ADictionary& out, AError* error);
  static State GetBoolean(const ADictionary& dictionary, const AQVString& key,
                          const AQVString& path, bool& out, AError* error);

  // The element `index` of `array` (whose path is `path`) as a dictionary,
  // or as a pair of two non-empty strings; false with the error naming
  // PATH[INDEX] when it is not one.
  static bool GetDictionaryAt(const AArray& array, std::size_t index, const AQVString& path,
                              ADictionary& out, AError* error);
  static bool GetStringPairAt(const AArray& array, std::size_t index, const AQVString& path,
                              AQVString& first, AQVString& second, AError* error);

  // "PATH.KEY" and "PATH[INDEX]".
  static AQVString MemberPath(const AQVString& path, const AQVString& key);
  static AQVString ElementPath(const AQVString& path, std::size_t index);

  // Stores "Invalid product description: PATH must be EXPECTATION"; returns false.
  static bool ReportInvalid(AError* error, const AQVString& path, const AQVString& expectation);
};

}  // namespace ppdforge
