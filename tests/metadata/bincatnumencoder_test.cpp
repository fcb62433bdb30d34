#include "metadata/bincatnumencoder.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <memory>
#include <sstream>

#include "common/missing.h"
#include "metadata/binnumericusermissing.h"
#include "support/hostusermissing.h"

namespace {

void DeclareMissing(BINCatNumEncoder& encoder, double value) {
  auto userMissing = std::make_unique<BINNumericUserMissing>();
  userMissing->AddValue(value, "missing");
  ASSERT_TRUE(encoder.SetUserMissingInfo(userMissing.release()));
}

TEST(BINCatNumEncoder, GivesCodesInOrderOfAppearance) {
  const BINCatNumEncoder encoder({5, 3, 5, 7});
  EXPECT_EQ(encoder.GetNumberOfCategories(), 3);
  const double values[] = {5, 3, 7};
  for (int code = 0; code < 3; ++code) {
    EXPECT_EQ(encoder.EncodeConst(values[code]), code);
    EXPECT_EQ(encoder.Decode(code), values[code]);
  }
}

TEST(BINCatNumEncoder, GivesNoCodeToMissingValues) {
  const double nan = std::nan("");
  BINCatNumEncoder encoder({nan, 5, MCMV::Missing(), 3, -nan, 5});
  DeclareMissing(encoder, 9);
  for (const double missing : {MCMV::Missing(), nan, -nan, 9.0}) {
    EXPECT_EQ(encoder.Encode(missing), -1.0) << missing;
    EXPECT_EQ(encoder.EncodeConst(missing), -1.0) << missing;
  }
  EXPECT_EQ(encoder.GetNumberOfCategories(), 2);
  EXPECT_EQ(encoder.Encode(3), 1.0) << "no code went to a missing value";
}

TEST(BINCatNumEncoder, UnknownValuesAndCodesAreMissing) {
  const BINCatNumEncoder encoder({5, 3});
  EXPECT_EQ(encoder.EncodeConst(4), -1.0);
  EXPECT_EQ(encoder.GetNumberOfCategories(), 2);
  for (const int code : {-1, 2, std::numeric_limits<int>::min()}) {
    EXPECT_EQ(encoder.Decode(code), MCMV::Missing()) << code;
  }
}

TEST(BINCatNumEncoder, ValueDeclaredMissingLaterKeepsItsCode) {
  BINCatNumEncoder encoder({5, 3});
  DeclareMissing(encoder, 5);
  EXPECT_EQ(encoder.Encode(5), -1.0);
  EXPECT_EQ(encoder.EncodeConst(5), -1.0);
  EXPECT_EQ(encoder.Decode(0), 5.0);
  encoder.SetUserMissingInfo(nullptr);
  EXPECT_EQ(encoder.Encode(5), 0.0);
}

TEST(BINCatNumEncoder, ZerosOfBothSignsAreOneCategory) {
  const BINCatNumEncoder encoder({-0.0, 0.0});
  EXPECT_EQ(encoder.GetNumberOfCategories(), 1);
  EXPECT_TRUE(std::signbit(encoder.Decode(0))) << "the one seen first";
}

TEST(BINCatNumEncoder, LabelsFillUpToTheCategories) {
  using Labels = std::vector<std::string>;
  BINCatNumEncoder encoder({5, 3, 7});
  encoder.SetValueLabel(2, "seven");
  encoder.SetValueLabel(3, "unknown");
  encoder.SetValueLabel(-1, "unknown");
  EXPECT_EQ(*encoder.GetValueLabels(), (Labels{"", "", "seven"}));
  encoder.SetValueLabels({"five"});
  encoder.SetValueLabel(99, "lengthens the list all the same");
  EXPECT_EQ(*encoder.GetValueLabels(), (Labels{"five", "", ""}));
  encoder.SetValueLabels({"a", "b", "c", "d"});
  encoder.SetValueLabel(0, "five");
  EXPECT_EQ(*encoder.GetValueLabels(), (Labels{"five", "b", "c", "d"}));
}

TEST(BINCatNumEncoder, CopiesGrowApart) {
  BINCatNumEncoder source({5, 3});
  DeclareMissing(source, 9);
  BINCatNumEncoder copy({1});
  copy = source;
  const BINCatNumEncoder& same = copy;
  copy = same;
  EXPECT_EQ(copy.Encode(7), 2.0);
  EXPECT_EQ(copy.Encode(9), -1.0);
  EXPECT_EQ(source.EncodeConst(7), -1.0);
  EXPECT_EQ(source.Encode(8), 2.0);
  EXPECT_EQ(copy.Decode(2), 7.0);
}

TEST(BINCatNumEncoder, ShowsSevenValuesToALine) {
  BINCatNumEncoder encoder({8, 7, 6, 5, 4, 3, 2, 1});
  encoder.SetValueLabels({"eight", "seven"});
  encoder.SetUserMissingInfo(new HostUserMissing(IBINUserMissing::UserMissingNumeric));
  std::ostringstream os;
  encoder.Display(os);
  EXPECT_EQ(os.str(),
            "\tBINCatNumEncoder: Last code = 7\n"
            "\t\tNumeric values of categories: 8 7 6 5 4 3 2 \n1 \n"
            "\t\tValue Labels:\neight seven \n"
            "\t\tUser-missing values for this encoder:\n\t\thost\n\n");
}

}  // namespace
