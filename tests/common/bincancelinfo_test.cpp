#include "common/bincancelinfo.h"

#include <gtest/gtest.h>

#include "support/hostdoubles.h"

namespace {

TEST(BINCancelInfo, AsksUntilTheFirstYes) {
  CountingCancel query(3);
  BINCancelInfo info(&query);
  EXPECT_FALSE(info.IsCancel());
  EXPECT_FALSE(info.IsCancel());
  EXPECT_TRUE(info.IsCancel());
  info.SetCancelPtr(nullptr);
  EXPECT_TRUE(info.IsCancel()) << "for good";
  info.SetCancelPtr(&query);
  EXPECT_TRUE(info.IsCancel());
  EXPECT_EQ(query.polls, 3);
}

TEST(BINCancelInfo, KeepsACancelThatComesWhileTheHostSaysNo) {
  CountingCancel query;
  BINCancelInfo info(&query);
  query.onPoll = [&] { info.SetCancel(); };
  EXPECT_TRUE(info.IsCancel());
  EXPECT_TRUE(info.IsCancel());
  EXPECT_EQ(query.polls, 1);
}

}  // namespace
