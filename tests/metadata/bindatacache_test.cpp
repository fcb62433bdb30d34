#include "metadata/bindatacache.h"

#include <gtest/gtest.h>

#include <limits>

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

  cache.Flush();
  EXPECT_FALSE(cache.IsAvailable());
  EXPECT_EQ(cache.GetRowSize(1), 0);
  EXPECT_EQ(cache.GetElem(1, 2), 3) << "values stay readable";
  EXPECT_TRUE(cache.AddElem(1, 7));
  EXPECT_EQ(cache.GetElem(1, 0), 7);
}

TEST(BINDataCache, RefusesPositionsOutOfRange) {
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
  EXPECT_EQ(out, Doubles{5});
  EXPECT_FALSE(cache.SetRow(0, {1, 1}) || cache.SetRow(0, {1, 1, 1, 1}) || cache.SetCol(0, {1}));
  EXPECT_EQ(Doubles(cache.GetRowPtr(0), cache.GetRowPtr(0) + 6), Doubles(6, 0.0));
  EXPECT_EQ(BINDataCache(0, 3).GetColPtr(2), nullptr) << "no row to point into";
}

TEST(BINDataCache, GivesRowsAndColumnsWhateverTheirFillCount) {
  BINDataCache cache(2, 3);
  EXPECT_TRUE(cache.SetRow(0, {1, 2, 3}) && cache.SetCol(1, {8, 9}));
  Doubles row;
  Doubles column;
  EXPECT_TRUE(cache.GetRow(1, row) && cache.GetCol(1, column));
  EXPECT_EQ(row, (Doubles{0, 9, 0}));
  EXPECT_EQ(column, (Doubles{8, 9}));
  EXPECT_EQ(cache.GetColPtr(2)[0], 3);
  EXPECT_EQ(cache.GetColPtr(1)[cache.GetNCols()], 9) << "elements lie that far apart";
  EXPECT_EQ(cache.GetRowSize(0), 0) << "nothing was appended";
}

TEST(BINDataCache, ResizeThatFailsChangesNothing) {
  BINDataCache cache(1, 1);
  cache.AddElem(0, 4);
  const int huge = std::numeric_limits<int>::max();
  EXPECT_FALSE(cache.Resize(-1, 2) || cache.Resize(2, -1) || cache.Resize(huge, huge));
  EXPECT_EQ(cache.GetNRows() * 10 + cache.GetNCols(), 11);
  EXPECT_TRUE(cache.IsAvailable());
  EXPECT_EQ(cache.GetElem(0, 0), 4);

  EXPECT_TRUE(cache.Resize(2, 2));
  EXPECT_FALSE(cache.IsAvailable());
  EXPECT_EQ(cache.GetRowSize(0), 1) << "until Flush()";
  EXPECT_EQ(cache.GetElem(1, 1), 0);
  EXPECT_EQ(BINDataCache(-1, 3).GetNCols(), 0);
}

}  // namespace
