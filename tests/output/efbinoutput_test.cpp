#include "output/efbinoutput.h"

#include <gtest/gtest.h>

#include <utility>

#include "support/agreement.h"

namespace {

using MCBinning::MCStatus;

TEST(EFBINOutput, FindsTheFirstRecordOfAnAttribute) {
  EFBINOutput output;
  std::vector<BINAttributeResults> all(2);
  EXPECT_EQ(Text(output.GetAllCutPoints(all)), "120020/-1[0 0 0]");
  EXPECT_EQ(all.size(), 2u) << "left alone";
  EXPECT_EQ(Text(output.SetAttributeResults({}, {}, {}, -1, 1, 0, 0, 0, 0)), "120011/-1[0 0 0]");
  const MCStatus refused(120005, false);
  EXPECT_EQ(Text(output.SetAttributeResults(refused, {}, {}, 2, 10, 0, 0, 0, 0)), "0/0[0 0 0]");
  output.SetAttributeResults({}, {1.5}, {2, 3}, 2, 20, 0, 0, 0, 0);
  BINAttributeResults result;
  EXPECT_EQ(Text(output.GetAttributeCutPoints(2, result)), "120005/-1[0 0 0]");
  for (const int unknown : {-1, 0}) {
    EXPECT_EQ(Text(output.GetAttributeCutPoints(unknown, result)), "120013/-1[0 0 0]");
  }
  EXPECT_EQ(result.GetNDistinctValues(), 10u) << "left alone";

  unsigned int place = 100;
  for (const int attribute : {7, 3, 9, 7, 3, 1}) {  // in no order
    output.SetAttributeResults({}, {}, {}, attribute, place++, 0, 0, 0, 0);
  }
  for (const auto& [attribute, first] :
       {std::pair(2, 10u), {7, 100u}, {3, 101u}, {9, 102u}, {1, 105u}}) {
    output.GetAttributeCutPoints(attribute, result);
    EXPECT_EQ(result.GetNDistinctValues(), first) << attribute;
  }
}

}  // namespace
