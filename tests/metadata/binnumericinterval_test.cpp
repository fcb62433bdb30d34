#include "metadata/binnumericinterval.h"

#include <gtest/gtest.h>

#include <cmath>
#include <sstream>

#include "support/rowname.h"

namespace {

struct IntervalExample {
  const char* name;
  BINNumericInterval interval;
  const char* contained;  // which of 2, 3, 4 and 1e300 are, as 0 or 1
  const char* text;
};

void PrintTo(const IntervalExample& example, std::ostream* os) { *os << example.name; }

class NumericIntervalTest : public testing::TestWithParam<IntervalExample> {};

TEST_P(NumericIntervalTest, ContainsAndShowsItsValues) {
  const BINNumericInterval& interval = GetParam().interval;
  std::ostringstream contained;
  for (const double x : {2.0, 3.0, 4.0, 1e300}) contained << interval.Contains(x);
  EXPECT_EQ(contained.str(), GetParam().contained);
  EXPECT_EQ(interval.IsEmpty(), contained.str() == "0000");
  EXPECT_FALSE(interval.Contains(std::nan("")));

  std::ostringstream text;
  interval.Display(text);
  EXPECT_EQ(text.str(), GetParam().text);
}

using Row = IntervalExample;
INSTANTIATE_TEST_SUITE_P(
    Examples, NumericIntervalTest,
    testing::Values(Row{"OnePoint", {3., 3.}, "0100", "BINNumericInterval: [ 3, 3 ]\n"},
                    Row{"BothEnds", {2., 3.}, "1100", "BINNumericInterval: [ 2, 3 ]\n"},
                    Row{"WrongOrder", {4., 3.}, "0000", "BINNumericInterval: [ 4, 3 ]\n"},
                    Row{"UpTo", {3., true}, "1100", "BINNumericInterval: ( -infinity, 3 ]\n"},
                    Row{"From", {3., false}, "0111", "BINNumericInterval: [ 3, infinity )\n"}),
    RowName);

TEST(BINNumericInterval, SettingAnEndTellsWhetherAnythingIsLeft) {
  BINNumericInterval interval(1.0, 2.0);
  EXPECT_TRUE(interval.SetLeftEnd(2.0));
  EXPECT_FALSE(interval.SetRightEnd(1.5));
  EXPECT_EQ(interval, BINNumericInterval(2.0, 1.5));
  EXPECT_FALSE(interval == BINNumericInterval(2.0, 2.0));
}

}  // namespace
