#include "common/bincancelinfo.h"

#include <gtest/gtest.h>

#include "support/hostdoubles.h"

namespace {

TEST(BINCancelInfo, KeepsACancelThatComesWhileTheHostSaysNo) {
  CountingCancel query;
  BINCancelInfo info(&query);
  query.onPoll = [&] { info.SetCancel(); };
  EXPECT_TRUE(info.IsCancel());
  EXPECT_TRUE(info.IsCancel());
  EXPECT_EQ(query.polls, 1);
}

}  // namespace
