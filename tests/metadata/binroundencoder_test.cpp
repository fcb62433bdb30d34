#include "metadata/binroundencoder.h"

#include <gtest/gtest.h>

#include "support/hostusermissing.h"

namespace {

TEST(BINRoundEncoder, RefusesStringsAndPassesOverAHostsClass) {
  HostUserMissing string(IBINUserMissing::UserMissingString);
  HostUserMissing numeric(IBINUserMissing::UserMissingNumeric);
  BINRoundEncoder encoder;
  EXPECT_TRUE(encoder.SetUserMissingInfo(&numeric));
  EXPECT_FALSE(encoder.SetUserMissingInfo(&string));
  EXPECT_EQ(encoder.GetUserMissingInfo(), &numeric);
  EXPECT_EQ(encoder.Encode(3.0), 3.0);
}

}  // namespace
