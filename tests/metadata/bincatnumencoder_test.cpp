#include "metadata/bincatnumencoder.h"

#include <gtest/gtest.h>

#include <cmath>
#include <memory>

#include "common/missing.h"
#include "metadata/binnumericusermissing.h"
#include "support/displaytext.h"
#include "support/hostusermissing.h"

namespace {

TEST(BINCatNumEncoder, GivesNoCodeToMissingValues) {
  const double nan = std::nan("");
  BINCatNumEncoder encoder({nan, 5, MCMV::Missing(), 3, -nan, 5});
  auto userMissing = std::make_unique<BINNumericUserMissing>();
  userMissing->AddValue(9, "missing");
  ASSERT_TRUE(encoder.SetUserMissingInfo(userMissing.release()));
  for (const double missing : {MCMV::Missing(), nan, -nan, 9.0}) {
    EXPECT_EQ(encoder.Encode(missing), -1.0) << missing;
    EXPECT_EQ(encoder.EncodeConst(missing), -1.0) << missing;
  }
  EXPECT_EQ(encoder.GetNumberOfCategories(), 2);
  EXPECT_EQ(encoder.Encode(3), 1.0) << "no code went to a missing value";
}

TEST(BINCatNumEncoder, ZerosOfBothSignsAreOneCategory) {
  const BINCatNumEncoder encoder({-0.0, 0.0});
  EXPECT_EQ(encoder.GetNumberOfCategories(), 1);
  EXPECT_TRUE(std::signbit(encoder.Decode(0))) << "the one seen first";
}

TEST(BINCatNumEncoder, ShowsSevenValuesToALine) {
  BINCatNumEncoder encoder({8, 7, 6, 5, 4, 3, 2, 1});
  encoder.SetValueLabels({"eight", "seven"});
  encoder.SetUserMissingInfo(new HostUserMissing(IBINUserMissing::UserMissingNumeric));
  EXPECT_EQ(DisplayText(encoder),
            "\tBINCatNumEncoder: Last code = 7\n"
            "\t\tNumeric values of categories: 8 7 6 5 4 3 2 \n1 \n"
            "\t\tValue Labels:\neight seven \n"
            "\t\tUser-missing values for this encoder:\n\t\thost\n\n");
}

}  // namespace
