#include "algorithm/binefpreprocess.h"

#include <gtest/gtest.h>

namespace {

using Doubles = std::vector<double>;

TEST(BINEFPreProcess, RefusesWhatCannotBeCut) {
  Doubles cutPoints{1};
  Doubles binWeights{2};
  std::vector<EFBINDataTuple> none;
  std::vector<EFBINDataTuple> one{{1, 1}};
  const auto cut = [&](int bins, auto* cases, double totalWeight) {
    return BINEFPreProcess(bins, true)
        .EFCreatePercentileCutPts(cases, cutPoints, binWeights, totalWeight);
  };
  EXPECT_FALSE(BINEFPreProcess(2, true).FindCutPts(cutPoints, binWeights, 1)) << "no cases given";
  EXPECT_FALSE(cut(2, &none, 1) || cut(2, &one, 0) || cut(2, &one, -1) || cut(0, &one, 1));
  EXPECT_EQ(cutPoints, Doubles{1});
  EXPECT_EQ(binWeights, Doubles{2});
}

// The last case's weight is lost in the sum of both: a host that reads the weight above the last
// cut point must find one.
TEST(BINEFPreProcess, HasOneWeightMoreThanCutPointsWhereAWeightIsLostInTheSum) {
  std::vector<EFBINDataTuple> cases{{3, 54043195528445952.0}, {6, 3}};
  for (const bool rightBorderClosed : {true, false}) {
    BINEFPreProcess preProcess(8, rightBorderClosed);
    Doubles cutPoints;
    Doubles binWeights;
    EXPECT_TRUE(
        preProcess.EFCreatePercentileCutPts(&cases, cutPoints, binWeights, 54043195528445952.0));
    EXPECT_EQ(cutPoints, Doubles());
    EXPECT_EQ(binWeights, Doubles{54043195528445952.0});
  }
}

// The weights are whole, so that the midpoint rule applies at some steps.
TEST(BINEFPreProcess, StepsGiveTheCandidatesOfTheWholeScan) {
  std::vector<BINDataTuple> tuples{{1, 0, 2}, {2, 1, 1}, {2, 0, 4},
                                   {3, 1, 1}, {5, 1, 2}, {8, 0, 6}};
  for (const bool rightBorderClosed : {true, false}) {
    BINEFPreProcess preProcess(8, rightBorderClosed);
    Doubles expected;
    Doubles binWeights;
    ASSERT_TRUE(preProcess.EFCreatePercentileCutPts(&tuples, expected, binWeights, 16));

    Doubles cutPoints;
    unsigned int position = 0;
    double cumulativeWeight = 0;
    double previousWeight = 0;
    for (int k = 1; k < 8; ++k) {
      const double value = preProcess.GetPercentile(cutPoints, binWeights, 12.5 * k, position,
                                                    cumulativeWeight, previousWeight, 16);
      if (k == 1 || value != cutPoints.back()) cutPoints.push_back(value);
    }
    EXPECT_EQ(cutPoints, expected);
    EXPECT_EQ(expected.front(), 1.5) << "2 of 16 lie at 1";
  }
}

}  // namespace
