#include "algorithm/binefpreprocess.h"

#include <gtest/gtest.h>

namespace {

using Doubles = std::vector<double>;

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
