#include "algorithm/binefpreprocess.h"

#include <gtest/gtest.h>

#include "support/rowname.h"

namespace {

using Doubles = std::vector<double>;

// Worked out by hand. `candidates` is what the same cases give with a target.
struct PercentileExample {
  const char* name;
  int binCount;
  bool rightBorderClosed;
  std::vector<EFBINDataTuple> cases;
  Doubles cutPoints;
  Doubles binWeights;
  Doubles candidates;
};

void PrintTo(const PercentileExample& example, std::ostream* os) { *os << example.name; }

class PercentileCutPoints : public testing::TestWithParam<PercentileExample> {
 protected:
  double TotalWeight() const {
    double total = 0.0;
    for (const EFBINDataTuple& item : GetParam().cases) total += item.weight;
    return total;
  }

  BINEFPreProcess preProcess{GetParam().binCount, GetParam().rightBorderClosed};
  Doubles cutPoints;
  Doubles binWeights;
};

TEST_P(PercentileCutPoints, AreTheseWithTheseWeights) {
  std::vector<EFBINDataTuple> cases = GetParam().cases;
  EXPECT_TRUE(preProcess.EFCreatePercentileCutPts(&cases, cutPoints, binWeights, TotalWeight()));
  EXPECT_EQ(cutPoints, GetParam().cutPoints);
  EXPECT_EQ(binWeights, GetParam().binWeights);
}

TEST_P(PercentileCutPoints, AreCandidatesUntrimmedWithATarget) {
  std::vector<BINDataTuple> cases;
  for (const auto& [value, weight] : GetParam().cases) cases.push_back({value, 0, weight});
  EXPECT_TRUE(preProcess.EFCreatePercentileCutPts(&cases, cutPoints, binWeights, TotalWeight()));
  EXPECT_EQ(cutPoints, GetParam().candidates);
  EXPECT_EQ(binWeights, Doubles());
}

const std::vector<EFBINDataTuple> kOneToTen = {{1, 1}, {2, 1}, {3, 1}, {4, 1}, {5, 1},
                                               {6, 1}, {7, 1}, {8, 1}, {9, 1}, {10, 1}};
const std::vector<EFBINDataTuple> kHeavySecond = {{1, 1}, {2, 5}, {3, 1}, {4, 1}};
const Doubles kMidpoints = {2.5, 4.5, 6.5, 8.5};

const PercentileExample kExamples[] = {
    {"ExactSharesClosed", 5, true, kOneToTen, kMidpoints, {2, 2, 2, 2, 2}, kMidpoints},
    {"ExactSharesOpen", 5, false, kOneToTen, kMidpoints, {2, 2, 2, 2, 2}, kMidpoints},
    {"HeavyTieClosed", 4, true, kHeavySecond, {2}, {6, 2}, {2}},
    {"HeavyTieOpen", 4, false, kHeavySecond, {2}, {1, 7}, {2}},
    {"CutAtTheMinimumClosed", 2, true, {{1, 6}, {2, 1}, {3, 1}}, {1}, {6, 2}, {1}},
    {"CutAtTheMinimumOpen", 2, false, {{1, 6}, {2, 1}, {3, 1}}, {}, {8}, {1}},
    {"CutAtTheMaximumClosed", 4, true, {{1, 1}, {2, 7}}, {}, {8}, {2}},
    {"CutAtTheMaximumOpen", 4, false, {{1, 1}, {2, 7}}, {2}, {1, 7}, {2}},
    {"Constant", 4, true, {{3, 1}, {3, 2}}, {}, {3}, {3}},
    {"OneBin", 1, true, kHeavySecond, {}, {8}, {}},
};

INSTANTIATE_TEST_SUITE_P(Examples, PercentileCutPoints, testing::ValuesIn(kExamples), RowName);

TEST(BINEFPreProcess, RefusesWhatCannotBeCut) {
  Doubles cutPoints{1};
  Doubles binWeights{2};
  std::vector<EFBINDataTuple> none;
  std::vector<EFBINDataTuple> one{{1, 1}};
  EXPECT_FALSE(BINEFPreProcess(2, true).FindCutPts(cutPoints, binWeights, 1)) << "no cases given";
  BINEFPreProcess preProcess(2, true);
  EXPECT_FALSE(preProcess.EFCreatePercentileCutPts(&none, cutPoints, binWeights, 1));
  for (const double totalWeight : {0.0, -1.0}) {
    EXPECT_FALSE(preProcess.EFCreatePercentileCutPts(&one, cutPoints, binWeights, totalWeight));
  }
  BINEFPreProcess noBins(0, true);
  EXPECT_FALSE(noBins.EFCreatePercentileCutPts(&one, cutPoints, binWeights, 1));
  EXPECT_EQ(cutPoints, Doubles{1});
  EXPECT_EQ(binWeights, Doubles{2});
}

}  // namespace
