#include "metadata/categoryencoding.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <memory>
#include <string>
#include <vector>

#include "common/missing.h"
#include "metadata/bincatnumencoder.h"
#include "metadata/binnumericusermissing.h"
#include "metadata/binstringencoder.h"
#include "metadata/binstringusermissing.h"

namespace {

struct Numbers {
  using Encoder = BINCatNumEncoder;
  using UserMissing = BINNumericUserMissing;
  using List = std::vector<double>;
  static List Values() { return {5, 3, 7, 9}; }
  static double None() { return MCMV::Missing(); }
};

struct Strings {
  using Encoder = BINStringEncoder;
  using UserMissing = BINStringUserMissing;
  using List = std::vector<std::string>;
  static List Values() { return {"pear", "apple", "", "fig"}; }
  static std::string None() { return ""; }
};

// What the encoders of numbers and of strings promise alike.
template <class Kind>
class CategoryEncoders : public testing::Test {
 protected:
  using Encoder = typename Kind::Encoder;

  void DeclareFirstMissing() {
    auto userMissing = std::make_unique<typename Kind::UserMissing>();
    userMissing->AddValue(values[0], "missing");
    ASSERT_TRUE(encoder.SetUserMissingInfo(userMissing.release()));
  }

  const typename Kind::List values = Kind::Values();
  Encoder encoder{{values[0], values[1], values[0], values[2]}};  // all but the last
};

using Kinds = testing::Types<Numbers, Strings>;
TYPED_TEST_SUITE(CategoryEncoders, Kinds);

TYPED_TEST(CategoryEncoders, GiveCodesInOrderOfAppearance) {
  for (int code = 0; code < 3; ++code) {
    const auto& value = this->values[static_cast<std::size_t>(code)];
    EXPECT_EQ(this->encoder.Encode(value), code);
    EXPECT_EQ(this->encoder.EncodeConst(value), code);
    EXPECT_EQ(this->encoder.Decode(code), value);
  }
  for (const int unknown : {-1, 3, std::numeric_limits<int>::min()}) {
    EXPECT_EQ(this->encoder.Decode(unknown), TypeParam::None()) << unknown;
  }
  EXPECT_EQ(this->encoder.EncodeConst(this->values[3]), -1.0);
  EXPECT_EQ(this->encoder.GetNumberOfCategories(), 3);
  EXPECT_EQ(this->encoder.Encode(this->values[3]), 3.0);
}

TYPED_TEST(CategoryEncoders, ValueDeclaredMissingLaterKeepsItsCode) {
  this->DeclareFirstMissing();
  EXPECT_EQ(this->encoder.Encode(this->values[0]), -1.0);
  EXPECT_EQ(this->encoder.EncodeConst(this->values[0]), -1.0);
  EXPECT_EQ(this->encoder.Decode(0), this->values[0]);
  this->encoder.SetUserMissingInfo(nullptr);
  EXPECT_EQ(this->encoder.Encode(this->values[0]), 0.0);
}

TYPED_TEST(CategoryEncoders, CopiesOutliveTheSourceAndGrowApart) {
  this->DeclareFirstMissing();
  auto source = std::make_unique<typename TypeParam::Encoder>(this->encoder);
  auto constructed = *source;
  typename TypeParam::Encoder assigned(typename TypeParam::List{this->values[3]});
  assigned = *source;
  const auto& same = assigned;
  assigned = same;
  source->Encode(this->values[3]);
  source.reset();
  for (auto* const copy : {&constructed, &assigned}) {
    EXPECT_EQ(copy->Decode(1), this->values[1]);
    EXPECT_EQ(copy->Encode(this->values[0]), -1.0);
    EXPECT_EQ(copy->GetNumberOfCategories(), 3);
    EXPECT_EQ(copy->Encode(this->values[3]), 3.0);
  }
}

TYPED_TEST(CategoryEncoders, LabelsFillUpToTheCategories) {
  using Labels = std::vector<std::string>;
  this->encoder.SetValueLabel(2, "third");
  this->encoder.SetValueLabel(3, "unknown");
  this->encoder.SetValueLabel(-1, "unknown");
  EXPECT_EQ(*this->encoder.GetValueLabels(), (Labels{"", "", "third"}));
  this->encoder.SetValueLabels({"first"});
  this->encoder.SetValueLabel(99, "lengthens the list all the same");
  EXPECT_EQ(*this->encoder.GetValueLabels(), (Labels{"first", "", ""}));
}

TEST(BINCatNumEncoder, GivesNoCodeToMissingValuesAndOneToBothZeros) {
  const double nan = std::nan("");
  BINCatNumEncoder encoder({nan, -0.0, MCMV::Missing(), 0.0, -nan, 3});
  for (const double missing : {MCMV::Missing(), nan, -nan}) {
    EXPECT_EQ(encoder.Encode(missing), -1.0) << missing;
    EXPECT_EQ(encoder.EncodeConst(missing), -1.0) << missing;
  }
  EXPECT_EQ(encoder.GetNumberOfCategories(), 2);
  EXPECT_EQ(encoder.Encode(3), 1.0) << "no code went to a missing value";
  EXPECT_TRUE(std::signbit(encoder.Decode(0))) << "the one seen first";
}

}  // namespace
