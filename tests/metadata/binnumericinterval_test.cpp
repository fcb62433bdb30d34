#include "metadata/binnumericinterval.h"

#include <gtest/gtest.h>

#include <cmath>
#include <sstream>

#include "support/displaytext.h"

namespace {

TEST(BINNumericInterval, ContainsAndShowsItsValues) {
  struct Row {
    BINNumericInterval interval;
    const char* contained;  // which of 2, 3, 4 and 1e300 are, as 0 or 1
    const char* text;
  };
  const Row rows[] = {{{3., 3.}, "0100", "BINNumericInterval: [ 3, 3 ]\n"},
                      {{2., 3.}, "1100", "BINNumericInterval: [ 2, 3 ]\n"},
                      {{4., 3.}, "0000", "BINNumericInterval: [ 4, 3 ]\n"},
                      {{3., true}, "1100", "BINNumericInterval: ( -infinity, 3 ]\n"},
                      {{3., false}, "0111", "BINNumericInterval: [ 3, infinity )\n"}};
  for (const auto& [interval, expected, text] : rows) {
    SCOPED_TRACE(text);
    std::ostringstream contained;
    for (const double x : {2.0, 3.0, 4.0, 1e300}) contained << interval.Contains(x);
    EXPECT_EQ(contained.str(), expected);
    EXPECT_EQ(interval.IsEmpty(), contained.str() == "0000");
    EXPECT_FALSE(interval.Contains(std::nan("")));
    EXPECT_EQ(DisplayText(interval), text);
  }
}

}  // namespace
