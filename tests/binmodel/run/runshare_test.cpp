#include "binmodel/run/runshare.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstddef>
#include <numeric>
#include <random>
#include <string>
#include <vector>

#include "binmodel/run/memorycolumns.h"
#include "support/scenario.h"

namespace {

using MCBinModel::AttributeShare;
using MCBinModel::ColumnView;
using MCBinModel::MemoryColumns;
using MCBinModel::RunVariables;
using MCBinModel::VariableInfo;

// The first attributes have different values in all records, the others few.
class ShareOutTest : public testing::Test {
 protected:
  std::vector<AttributeShare> ShareOut(std::size_t manyCount, std::size_t fewCount,
                                       std::size_t threadCount, std::size_t recordCount = 60000) {
    std::mt19937_64 random(TestSeed());
    std::vector<double> many(recordCount), few(recordCount);
    for (double& value : many) value = std::normal_distribution<double>()(random);
    for (double& value : few) value = static_cast<double>(random() % 500);
    MemoryColumns columns(recordCount);
    columns.Add(ColumnView<double>{many.data(), sizeof(double)});
    columns.Add(ColumnView<double>{few.data(), sizeof(double)});
    RunVariables variables;
    for (std::size_t i = 0; i < manyCount + fewCount; ++i) {
      VariableInfo attribute;
      attribute.name = std::to_string(i);
      variables.attributes.push_back(attribute);
      variables.attributeColumns.push_back(i < manyCount ? 0 : 1);
    }
    const std::vector<AttributeShare> shares =
        MCBinModel::ShareOut(variables, columns, threadCount);

    AttributeShare all;
    for (const AttributeShare& share : shares) {
      EXPECT_FALSE(share.empty());
      all.insert(all.end(), share.begin(), share.end());
    }
    std::sort(all.begin(), all.end());
    AttributeShare expected(manyCount + fewCount);
    std::iota(expected.begin(), expected.end(), std::size_t{0});
    EXPECT_EQ(all, expected) << "each attribute once";
    return shares;
  }
};

TEST_F(ShareOutTest, GivesEveryThreadSomeOfWhatIsCostly) {
  EXPECT_EQ(ShareOut(5, 5, 2), (std::vector<AttributeShare>{{0, 2, 4, 7, 9}, {1, 3, 5, 6, 8}}));
  EXPECT_EQ(ShareOut(5, 5, 2, 1000),
            (std::vector<AttributeShare>{{0, 2, 4, 6, 8}, {1, 3, 5, 7, 9}}))
      << "few records are not looked at";
}

TEST_F(ShareOutTest, LeavesSmallSharesToTheEndWhereThereAreMany) {
  EXPECT_EQ(ShareOut(5, 2, 1).size(), 1U);
  EXPECT_EQ(ShareOut(3, 0, 3).size(), 3U);
  const std::vector<AttributeShare> shares = ShareOut(300, 0, 3);
  ASSERT_GT(shares.size(), 3U);
  EXPECT_EQ(shares[0].size(), 90U);
  EXPECT_LE(shares.back().size(), 10U);
}

TEST_F(ShareOutTest, LeavesNoShareEmpty) {
  for (std::size_t attributeCount = 256; attributeCount < 300; ++attributeCount)
    ShareOut(attributeCount, 0, 8, 1000);
}

}  // namespace
