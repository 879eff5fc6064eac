#include <gtest/gtest.h>

#include <climits>
#include <string>

#include "core/AArray.h"
#include "core/ADictionary.h"
#include "core/AValue.h"

namespace ppdforge {
namespace {

TEST(AValueTest, ReadingsByType) {
  struct Case {
    const char* name;
    AValue value;
    AValue::Type type;
    bool boolean;
    long long integer;
    double real;
  };
  const Case cases[] = {
      {"null", AValue(), AValue::Type::kNull, false, 0, 0.0},
      {"true", AValue(true), AValue::Type::kBoolean, true, 1, 1.0},
      {"false", AValue(false), AValue::Type::kBoolean, false, 0, 0.0},
      {"integer", AValue(-3), AValue::Type::kInteger, true, -3, -3.0},
      {"real truncates", AValue(2.9), AValue::Type::kReal, true, 2, 2.9},
      {"negative real truncates", AValue(-2.9), AValue::Type::kReal, true, -2, -2.9},
      {"huge real clamps", AValue(1e30), AValue::Type::kReal, true, LLONG_MAX, 1e30},
      {"string", AValue("12.5"), AValue::Type::kString, true, 12, 12.5},
      {"yes string", AValue("yes"), AValue::Type::kString, true, 0, 0.0},
      {"data", AValue::Data("1"), AValue::Type::kData, false, 0, 0.0},
      {"date", AValue::Date(5.0), AValue::Type::kDate, false, 0, 0.0},
      {"array", AValue(AArray{1}), AValue::Type::kArray, false, 0, 0.0},
  };
  for (const Case& c : cases) {
    EXPECT_EQ(c.value.GetType(), c.type) << c.name;
    EXPECT_EQ(c.value.BoolValue(), c.boolean) << c.name;
    EXPECT_EQ(c.value.IntegerValue(), c.integer) << c.name;
    EXPECT_DOUBLE_EQ(c.value.DoubleValue(), c.real) << c.name;
  }
  EXPECT_FALSE(AValue(true).IsNumber());
  EXPECT_TRUE(AValue(1.5).IsNumber());
  EXPECT_EQ(AValue::Date(5.0).DateValue(), 5.0);
  EXPECT_STREQ(AValue::TypeName(AValue::Type::kDictionary), "dictionary");
}

TEST(AValueTest, EqualityKeepsBooleansApart) {
  EXPECT_EQ(AValue(2), AValue(2.0));
  EXPECT_NE(AValue(2), AValue(2.5));
  EXPECT_NE(AValue(1), AValue(true));
  EXPECT_NE(AValue(1.0), AValue(true));
  EXPECT_NE(AValue("1"), AValue(1));
  EXPECT_EQ(AValue(AArray{1, "a"}), AValue(AArray{1.0, "a"}));
  EXPECT_NE(AValue::Data("a"), AValue("a"));
}

TEST(AValueTest, ContainersCopyOnWrite) {
  AArray original{"a", "b"};
  const AValue held(original);
  AArray copy = original;
  copy.Append("c");
  copy.Set(5, 7);
  EXPECT_EQ(original.Count(), 2u);
  EXPECT_EQ(copy.Count(), 6u);
  EXPECT_TRUE(copy[4].IsNull());
  EXPECT_EQ(copy.GetStringAt(2), "c");
  EXPECT_EQ(copy.GetStringAt(5), "");
  EXPECT_EQ(copy.GetStringAt(99), "");
  copy.Append(copy[0]);
  EXPECT_EQ(copy.GetStringAt(6), "a");

  AArray fromValue;
  ASSERT_TRUE(held.GetArray(fromValue));
  fromValue.RemoveAt(0);
  EXPECT_EQ(original, (AArray{"a", "b"}));
  EXPECT_EQ(fromValue, (AArray{"b"}));

  ADictionary dictionary;
  dictionary.Set("name", "A4");
  dictionary.Set("sizes", AArray{1, 2});
  const AValue frozen(dictionary);
  dictionary.Set("name", "Letter");
  dictionary.Remove("sizes");

  ADictionary before;
  ASSERT_TRUE(frozen.GetDictionary(before));
  EXPECT_EQ(before.GetString("name"), "A4");
  AArray sizes;
  EXPECT_TRUE(before.GetArray("sizes", sizes));
  EXPECT_EQ(sizes.Count(), 2u);
  EXPECT_EQ(dictionary.GetString("name"), "Letter");
  EXPECT_FALSE(dictionary.Contains("sizes"));

  AQVString text = "kept";
  EXPECT_FALSE(before.GetString("sizes", text));
  EXPECT_EQ(text, "");
  ADictionary nested;
  EXPECT_FALSE(before.GetDictionary("name", nested));
  EXPECT_EQ(before.Get("missing"), nullptr);
}

TEST(AValueTest, DictionariesKeepKeyOrderAndTheLastOfARepeatedKey) {
  const auto keys = [](const ADictionary& dictionary) {
    std::string joined;
    for (const auto& [key, value] : dictionary) joined += key.UTF8() + "=" + value.AsString()->UTF8() + " ";
    return joined;
  };
  ADictionary::Items items;
  for (const char* pair : {"b1", "a1", "c1", "a2", "b2", "a3"}) {
    items.emplace_back(AQVString(std::string(1, pair[0])), AValue(AQVString(pair)));
  }
  ADictionary dictionary = ADictionary::FromItems(std::move(items));
  EXPECT_EQ(keys(dictionary), "a=a3 b=b2 c=c1 ");
  dictionary.Set("ab", "x");
  dictionary.Set("b", "y");
  dictionary.Set("", "z");
  dictionary.Remove("a");
  EXPECT_EQ(keys(dictionary), "=z ab=x b=y c=c1 ");
  EXPECT_EQ(dictionary.GetString("ab"), "x");
  EXPECT_EQ(dictionary.Get("a"), nullptr);
  EXPECT_TRUE(dictionary.Contains(""));
}

}  // namespace
}  // namespace ppdforge
