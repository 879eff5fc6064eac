// A binary property list whose dictionary key holds a NUL character made
// libplist abort (found by the strings-table fuzzer): such lists are refused
// before libplist reads them.

#include <gtest/gtest.h>
#include <plist/plist.h>

#include <cstdlib>
#include <string>

#include "core/APropertyList.h"
#include "core/AStringsTable.h"

namespace ppdforge {
namespace {

// A binary list of one dictionary {key: value}, with the "#" of the written
// bytes `pattern` replaced by a NUL character.
std::string BinaryWithNul(const char* key, const char* value, const std::string& pattern) {
  plist_t root = plist_new_dict();
  plist_dict_set_item(root, key, plist_new_string(value));
  char* bytes = nullptr;
  uint32_t length = 0;
  plist_to_bin(root, &bytes, &length);
  plist_free(root);
  std::string out(bytes, length);
  std::free(bytes);
  const std::size_t at = out.find(pattern);
  if (at != std::string::npos) out[at + pattern.find('#')] = '\0';
  return out;
}

struct NulCase {
  const char* name;
  const char* key;
  const char* value;
  std::string pattern;
};

class PropertyListNulCharacter : public ::testing::TestWithParam<NulCase> {};

TEST_P(PropertyListNulCharacter, IsRefusedWithAReason) {
  const std::string bytes = BinaryWithNul(GetParam().key, GetParam().value, GetParam().pattern);
  std::string patched = GetParam().pattern;
  patched[patched.find('#')] = '\0';
  ASSERT_NE(bytes.find(patched), std::string::npos);
  AValue value;
  AQVString problem;
  EXPECT_FALSE(APropertyList::Parse(bytes, value, &problem));
  EXPECT_EQ(problem, "a string in the property list holds a NUL character");
  EXPECT_FALSE(AStringsTable::Parse(bytes).has_value());
}

INSTANTIATE_TEST_SUITE_P(
    Strings, PropertyListNulCharacter,
    ::testing::Values(NulCase{"AsciiKey", "Paper#Size", "Format", "Paper#Size"},
                      // libplist writes non-ASCII text as UTF-16, whose "#" is 00 23.
                      NulCase{"Utf16Key", "Qualit\xC3\xA9#", "x", std::string("\x00\xE9\x00#", 4)},
                      NulCase{"AsciiValue", "Quality", "Qual#ity", "Qual#ity"}),
    [](const ::testing::TestParamInfo<NulCase>& param) { return std::string(param.param.name); });

}  // namespace
}  // namespace ppdforge
