// The ten cases that docs/method.md works out by hand, with the numbers as they stand there.

#include <gtest/gtest.h>

#include <vector>

#include "support/scenario.h"
#include "support/wholerun.h"

namespace {

using Numbers = std::vector<double>;
using Bins = std::vector<Numbers>;

// The bins of x, for classes if the driver is supervised.
reference::Binning BinTenCases(Driver driver, double weight, bool rightBorderClosed) {
  Scenario scenario;
  scenario.Append(Continuous({1, 2, 2, 3, 4, 5, 5, 6, 7, 8}));
  scenario.Append(Categorical({0, 0, 0, 0, 1, 0, 1, 1, 1, 1}, 2, IBINVariable::RoleTarget));
  scenario.Append(Weights(Numbers(10, weight)));
  scenario.options.numberOfBins = 4;
  scenario.options.rightBorderClosed = rightBorderClosed;
  return Bin(driver, scenario).results.at(0).binning;
}

TEST(WorkedExample, TenCasesAreTooFewForTheBestSplit) {
  const reference::Binning binning = BinTenCases(Driver::kSupervised, 1.0, true);
  EXPECT_EQ(binning.status.code, 120017);
  EXPECT_EQ(binning.counts, (Bins{{10, 5, 5}}));
  EXPECT_EQ(binning.cases.distinctValues, 8u);
  EXPECT_EQ(binning.modelEntropy, 1.0);
}

TEST(WorkedExample, TwiceTheWeightBuysOneCut) {
  const reference::Binning binning = BinTenCases(Driver::kSupervised, 2.0, true);
  EXPECT_EQ(binning.status.code, 0);
  EXPECT_EQ(binning.cutPoints, Numbers{3});
  EXPECT_EQ(binning.counts, (Bins{{8, 8, 0}, {12, 2, 10}}));
  EXPECT_NEAR(binning.modelEntropy, 0.39001, 0.000005);
  EXPECT_EQ(BinTenCases(Driver::kSupervised, 2.0, false).cutPoints, Numbers{4});
}

TEST(WorkedExample, QuartersMeetTiesAndAnExactHit) {
  const reference::Binning closed = BinTenCases(Driver::kEqualFrequency, 1.0, true);
  EXPECT_EQ(closed.cutPoints, (Numbers{2, 4.5, 6}));
  EXPECT_EQ(closed.counts, (Bins{{3}, {2}, {3}, {2}}));
  const reference::Binning open = BinTenCases(Driver::kEqualFrequency, 1.0, false);
  EXPECT_EQ(open.cutPoints, (Numbers{2, 4.5, 6}));
  EXPECT_EQ(open.counts, (Bins{{1}, {4}, {2}, {3}}));
}

}  // namespace
