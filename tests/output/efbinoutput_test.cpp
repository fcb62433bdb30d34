#include "output/efbinoutput.h"

#include <gtest/gtest.h>

#include "support/agreement.h"
#include "support/displaytext.h"

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
}

TEST(EFBINOutput, Display) {
  EFBINOutput output;
  output.SetAttributeResults({}, {}, {12.5}, 4, 9, 12.5, 13, -3, 8);
  EXPECT_EQ(DisplayText(output),
            "\nStart of EFBINOutput display\n"
            "cut point :"
            "\nStart of BINAttributeResults display\n"
            "BINDataTuple   attribute = 4\n"
            "Number of distinct values = 9\n"
            "Total weight = 12.5\n"
            "Total weight with missing = 13\n"
            "Minimum = -3\n"
            "Maximum = 8\n"
            "Number of cutpoints = 0\n"
            "The CellCounts are\n"
            "12.5  \n"
            "\n"
            "End of BINAttributeResults display\n"
            "\nEnd of EFBINOutput display\n");
}

}  // namespace
