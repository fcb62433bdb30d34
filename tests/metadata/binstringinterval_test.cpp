#include "metadata/binstringinterval.h"

#include <gtest/gtest.h>

#include <sstream>

#include "support/rowname.h"

namespace {

struct StringIntervalExample {
  const char* name;
  BINStringInterval interval;
  const char* contained;  // which of "b", "bb", "d" and "\xc3" are, as 0 or 1
  const char* text;
};

void PrintTo(const StringIntervalExample& example, std::ostream* os) { *os << example.name; }

class StringIntervalTest : public testing::TestWithParam<StringIntervalExample> {};

TEST_P(StringIntervalTest, ContainsAndShowsItsValues) {
  const BINStringInterval& interval = GetParam().interval;
  std::ostringstream contained;
  for (const char* s : {"b", "bb", "d", "\xc3"}) contained << interval.Contains(s);
  EXPECT_EQ(contained.str(), GetParam().contained);
  EXPECT_EQ(interval.IsEmpty(), contained.str() == "0000");

  std::ostringstream text;
  interval.Display(text);
  EXPECT_EQ(text.str(), GetParam().text);
}

using Row = StringIntervalExample;
INSTANTIATE_TEST_SUITE_P(
    Examples, StringIntervalTest,
    testing::Values(
        Row{"LeftOpen", {"b", false, "d", true}, "0110", "BINStringInterval: ( b, d ]\n"},
        Row{"RightOpen", {"b", true, "d", false}, "1100", "BINStringInterval: [ b, d )\n"},
        Row{"OnePoint", {"b", true, "b", true}, "1000", "BINStringInterval: [ b, b ]\n"},
        Row{"OnePointHalf", {"b", true, "b", false}, "0000", "BINStringInterval: [ b, b )\n"},
        Row{"WrongOrder", {"d", true, "b", true}, "0000", "BINStringInterval: [ d, b ]\n"},
        Row{"Unsigned", {"c", true, "\xff", true}, "0011", "BINStringInterval: [ c, \xff ]\n"}),
    RowName);

}  // namespace
