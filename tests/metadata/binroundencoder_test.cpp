#include "metadata/binroundencoder.h"

#include <gtest/gtest.h>

#include "common/missing.h"
#include "metadata/binnumericusermissing.h"
#include "support/hostusermissing.h"

namespace {

TEST(BINRoundEncoder, AsksForMissingBeforeRounding) {
  BINNumericUserMissing userMissing;
  BINRoundEncoder encoder;
  ASSERT_TRUE(encoder.SetUserMissingInfo(&userMissing));
  userMissing.AddValue(3, "");
  EXPECT_EQ(encoder.Encode(3.0), MCMV::Missing());
  EXPECT_EQ(encoder.Encode(2.9), 3.0);
  encoder.SetUserMissingInfo(nullptr);
  EXPECT_EQ(encoder.Encode(3.0), 3.0);
}

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
