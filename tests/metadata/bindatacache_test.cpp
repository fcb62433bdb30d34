#include "metadata/bindatacache.h"

#include <gtest/gtest.h>

#include <limits>
#include <utility>

#include "common/missing.h"

namespace {

using Doubles = std::vector<double>;

TEST(BINDataCache, IsFullWhenOneRowIs) {
  BINDataCache cache(2, 3);
  EXPECT_TRUE(cache.AddElem(1, 1) && cache.AddElem(1, 2) && cache.AddElem(0, 9));
  EXPECT_FALSE(cache.IsAvailable());
  EXPECT_TRUE(cache.AddElem(1, 3));
  EXPECT_TRUE(cache.IsAvailable());
  EXPECT_FALSE(cache.AddElem(1, 4)) << "it would land in the next row, or nowhere";
  EXPECT_EQ(cache.GetRowSize(0), 1);
  EXPECT_EQ(Doubles(cache.GetRowPtr(0), cache.GetRowPtr(0) + 6), (Doubles{9, 0, 0, 1, 2, 3}));
  EXPECT_EQ(cache.GetColPtr(1)[cache.GetNCols()], 2) << "elements lie that far apart";

  cache.Flush();
  EXPECT_FALSE(cache.IsAvailable());
  EXPECT_EQ(cache.GetRowSize(1), 0);
  EXPECT_EQ(cache.GetElem(1, 2), 3) << "values stay readable";
  EXPECT_TRUE(cache.AddElem(1, 7));
  EXPECT_EQ(cache.GetElem(1, 0), 7);
}

TEST(BINDataCache, TakesAndGivesNothingOutOfRange) {
  BINDataCache cache(2, 3);
  Doubles out{5};
  for (const int row : {-1, 2}) {
    EXPECT_FALSE(cache.AddElem(row, 1) || cache.SetElem(row, 0, 1));
    EXPECT_FALSE(cache.SetRow(row, {1, 1, 1}) || cache.GetRow(row, out));
    EXPECT_EQ(cache.GetElem(row, 0), MCMV::Missing());
    EXPECT_EQ(cache.GetRowPtr(row), nullptr);
    EXPECT_EQ(cache.GetRowSize(row), 0);
  }
  for (const int col : {-1, 3}) {
    EXPECT_FALSE(cache.SetElem(0, col, 1) || cache.SetCol(col, {1, 1}) || cache.GetCol(col, out));
    EXPECT_EQ(cache.GetElem(1, col), MCMV::Missing());
    EXPECT_EQ(cache.GetColPtr(col), nullptr);
  }
  EXPECT_FALSE(cache.SetRow(0, {1, 1}) || cache.SetRow(0, {1, 1, 1, 1}) || cache.SetCol(0, {1}));
  EXPECT_EQ(out, Doubles{5});
  EXPECT_TRUE(cache.SetRow(0, {1, 2, 3}) && cache.SetCol(1, {8, 9}));
  EXPECT_TRUE(cache.GetRow(1, out));
  EXPECT_EQ(out, (Doubles{0, 9, 0}));
}

TEST(BINDataCache, IsWholeAfterCopiesMovesAndAResizeThatFails) {
  BINDataCache cache(2, 2);
  cache.AddElem(1, 5);
  BINDataCache moved(std::move(cache));
  BINDataCache assigned(7, 7);
  assigned = std::move(moved);
  for (const BINDataCache* each : {&cache, &moved, &assigned}) {  // NOLINT(bugprone-use-after-move)
    Doubles row;
    EXPECT_EQ(each->GetRow(1, row), each->GetNRows() > 1);
    EXPECT_EQ(each->GetRowSize(1), each->GetNRows() > 1 ? 1 : 0);
  }
  const int huge = std::numeric_limits<int>::max();
  EXPECT_FALSE(assigned.Resize(-1, 2) || assigned.Resize(2, -1) || assigned.Resize(huge, huge));
  EXPECT_EQ(BINDataCache(assigned).GetElem(1, 0), 5);
}

}  // namespace
