#include <gtest/gtest.h>

#include <functional>
#include <initializer_list>
#include <memory>

#include "common/missing.h"
#include "metadata/bincatnumencoder.h"
#include "metadata/bincatvar.h"
#include "metadata/bincontvar.h"
#include "metadata/binnumericusermissing.h"
#include "metadata/binroundencoder.h"
#include "metadata/binstringencoder.h"
#include "metadata/binweightvar.h"
#include "support/hostusermissing.h"

// One rule for everything that owns a user-missing definition.

namespace {

constexpr int kNumeric = IBINUserMissing::UserMissingNumeric;
constexpr int kString = IBINUserMissing::UserMissingString;

// An owner seen through the operations that all owners share.
struct Owner {
  std::function<bool(IBINUserMissing*)> set;
  std::function<IBINUserMissing*()> get;
  std::function<Owner()> clone;
};

template <typename Interface>
Owner OwnerOf(Interface* object) {
  const std::shared_ptr<Interface> owner(object);
  return {[owner](IBINUserMissing* userMissing) { return owner->SetUserMissingInfo(userMissing); },
          [owner] { return owner->GetUserMissingInfo(); },
          [owner] { return OwnerOf<Interface>(owner->Clone()); }};
}

Owner CatVar(IBINVariable::MeasureLevel level) {
  return OwnerOf<IBINVariable>(new BINCatVar("c", "", 2, level, IBINVariable::RoleAttribute));
}

struct OwnerKind {
  const char* name;
  int dataType;
  Owner (*make)();
};

using Var = IBINVariable;
const OwnerKind kOwners[] = {
    {"CatNumEncoder", kNumeric, [] { return OwnerOf<IBINEncoder>(new BINCatNumEncoder(2)); }},
    {"StringEncoder", kString, [] { return OwnerOf<IBINEncoder>(new BINStringEncoder(2)); }},
    {"ContVar", kNumeric, [] { return OwnerOf<Var>(new BINContVar("x", "", Var::RoleAttribute)); }},
    {"NumericCatVar", kNumeric, [] { return CatVar(Var::MeasureNumericCategorical); }},
    {"StringCatVar", kString, [] { return CatVar(Var::MeasureStringCategorical); }},
    {"CatVarOfUnknownLevel", kString, [] { return CatVar(Var::MeasureUnknown); }},
    {"WeightVar", kNumeric,
     [] { return OwnerOf<Var>(new BINWeightVar("w", "", Var::RoundClosest)); }}};

TEST(UserMissingOwnership, TakesOneOfTheRightTypeAndDeletesItOnce) {
  for (const auto& [name, type, make] : kOwners) {
    SCOPED_TRACE(name);
    {
      const Owner owner = make();
      owner.set(new HostUserMissing(type));
      auto* const second = new HostUserMissing(type);
      EXPECT_TRUE(owner.set(second) && owner.set(second));
      EXPECT_EQ(HostUserMissing::alive, 1) << "what was replaced is deleted";
      HostUserMissing other(type == kNumeric ? kString : kNumeric);
      EXPECT_FALSE(owner.set(&other));
      EXPECT_EQ(owner.get(), second);
      {
        const Owner clone = owner.clone();
        EXPECT_NE(clone.get(), second);
        EXPECT_TRUE(owner.set(nullptr));
        EXPECT_EQ(owner.get(), nullptr);
        ASSERT_NE(clone.get(), nullptr);
        EXPECT_EQ(clone.get()->GetDataType(), type);
        EXPECT_EQ(HostUserMissing::alive, 2);
      }
      owner.set(new HostUserMissing(type));
    }
    EXPECT_EQ(HostUserMissing::alive, 0);
  }
}

IBINUserMissing* Missing(double value) {
  auto missing = std::make_unique<BINNumericUserMissing>();
  missing->AddValue(value, "");
  return missing.release();
}

TEST(UserMissingOwnership, IsNotSharedByAssignedVariables) {
  BINContVar number("a", "", Var::RoleUndefined);
  BINCatVar category("s", "", 9, Var::MeasureStringCategorical, Var::RoleTarget);
  BINWeightVar weight("w", "", Var::RoundClosest);
  weight.SetUserMissingInfo(Missing(9));
  std::unique_ptr<Var> clone;
  {
    BINContVar otherNumber("b", "B", Var::RoleAttribute);
    otherNumber.SetUserMissingInfo(Missing(7));
    number = otherNumber;
    category = BINCatVar("c", "", 2, Var::MeasureNumericCategorical, Var::RoleTarget);
    BINWeightVar otherWeight("v", "", Var::RoundTruncate);
    otherWeight.SetUserMissingInfo(Missing(7));
    weight = otherWeight;
    clone.reset(otherWeight.Clone());
  }
  EXPECT_EQ(number.GetVariableName() + number.GetVariableLabel(), "bB");
  EXPECT_EQ(number.GetVariableRole(), Var::RoleAttribute);
  EXPECT_EQ(number.GetUserMissingInfo()->GetNDiscreteValues(), 1);
  EXPECT_EQ(category.GetMeasureLevel(), Var::MeasureNumericCategorical);
  EXPECT_EQ(category.GetNumberOfCategories(), 2);
  for (const Var* const variable : std::initializer_list<const Var*>{&weight, clone.get()}) {
    const auto& encoder = dynamic_cast<const BINRoundEncoder&>(*variable->GetEncoder());
    EXPECT_EQ(encoder.GetUserMissingInfo(), variable->GetUserMissingInfo());
    EXPECT_EQ(encoder.Encode(7), MCMV::Missing());
    EXPECT_EQ(encoder.Encode(9), 9.0);
    EXPECT_EQ(encoder.Encode(2.9), variable == &weight ? 3.0 : 2.0) << "the option is its own";
  }
}

}  // namespace
