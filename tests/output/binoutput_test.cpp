#include "output/binoutput.h"

#include <gtest/gtest.h>

#include "support/agreement.h"

namespace {

using MCBinning::MCStatus;
using Records = std::vector<BINAttributeTargetResults>;

// A record that its number of distinct values tells from others.
std::string Set(BINOutput& output, int attribute, int target, unsigned int distinct,
                const MCStatus& status = {}) {
  return Text(
      output.SetAttributeTargetResults(status, {}, {}, attribute, target, distinct, 0, 0, 0, 0, 0));
}

const std::string kOk = "0/0[0 0 0]";
const std::string kUnknown = "120013/-1[0 0 0]";

TEST(BINOutput, RefusesWhatIsNoPair) {
  BINOutput output;
  BINAttributeTargetResults result;
  Set(output, 0, 1, 10);
  for (const auto& [attribute, target] : {std::pair(-1, 1), {0, -1}, {1, 1}}) {
    EXPECT_EQ(Set(output, attribute, target, 0), kUnknown);
    EXPECT_EQ(Text(output.GetAttributeTargetCutPoints(attribute, target, result)), kUnknown);
  }
  EXPECT_EQ(Text(output.GetAttributeTargetCutPoints(0, 2, result)), kUnknown);
  Records records(3);
  EXPECT_EQ(Text(output.GetAttributeCutPoints(1, records)), kUnknown);
  EXPECT_EQ(Text(BINOutput().GetAllCutPoints(records)), "120020/-1[0 0 0]");
  EXPECT_EQ(records.size(), 3u) << "left alone";
}

TEST(BINOutput, FindsTheFirstRecordOfAPairAndEveryOneOfAnAttribute) {
  BINOutput output;
  EXPECT_EQ(Set(output, 0, 1, 10, MCStatus(120017, true)), kOk) << "not the record's own status";
  Set(output, 1, 0, 20);
  Set(output, 0, 1, 30);
  Set(output, 0, 2, 40, MCStatus(120016, true));
  BINAttributeTargetResults result;
  EXPECT_EQ(Text(output.GetAttributeTargetCutPoints(0, 1, result)), "120017/1[0 0 0]");
  EXPECT_EQ(result.GetNDistinctValues(), 10u);
  Records records(1);
  EXPECT_EQ(Text(output.GetAttributeCutPoints(0, records)), "120016/1[0 0 0]") << "the last one's";
  ASSERT_EQ(records.size(), 4u) << "appended";
  EXPECT_EQ(records[3].GetNDistinctValues(), 40u);
}

}  // namespace
