#include <gtest/gtest.h>

#include <functional>
#include <memory>

#include "metadata/bincatnumencoder.h"
#include "metadata/bincatvar.h"
#include "metadata/bincontvar.h"
#include "metadata/binstringencoder.h"
#include "metadata/binweightvar.h"
#include "support/hostusermissing.h"
#include "support/rowname.h"

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

void PrintTo(const OwnerKind& kind, std::ostream* os) { *os << kind.name; }

class UserMissingOwnershipTest : public testing::TestWithParam<OwnerKind> {
 protected:
  static HostUserMissing* Fitting() { return new HostUserMissing(GetParam().dataType); }
};

TEST_P(UserMissingOwnershipTest, RefusesTheOtherTypeAndKeepsWhatItHas) {
  {
    const Owner owner = GetParam().make();
    auto* const held = Fitting();
    ASSERT_TRUE(owner.set(held));
    HostUserMissing other(GetParam().dataType == kNumeric ? kString : kNumeric);
    EXPECT_FALSE(owner.set(&other));
    EXPECT_EQ(owner.get(), held);
    EXPECT_EQ(HostUserMissing::alive, 2);
  }
  EXPECT_EQ(HostUserMissing::alive, 0);
}

TEST_P(UserMissingOwnershipTest, DeletesWhatIsReplacedButNotWhatIsGivenTwice) {
  const Owner owner = GetParam().make();
  owner.set(Fitting());
  auto* const second = Fitting();
  owner.set(second);
  EXPECT_EQ(HostUserMissing::alive, 1);
  EXPECT_TRUE(owner.set(second));
  EXPECT_EQ(owner.get(), second);
  EXPECT_EQ(HostUserMissing::alive, 1);
  EXPECT_TRUE(owner.set(nullptr));
  EXPECT_EQ(owner.get(), nullptr);
  EXPECT_EQ(HostUserMissing::alive, 0);
}

TEST_P(UserMissingOwnershipTest, ClonesHaveTheirOwn) {
  const Owner owner = GetParam().make();
  owner.set(Fitting());
  const Owner clone = owner.clone();
  EXPECT_NE(clone.get(), owner.get());
  owner.set(nullptr);
  ASSERT_NE(clone.get(), nullptr);
  EXPECT_EQ(clone.get()->GetDataType(), GetParam().dataType);
}

using Row = OwnerKind;
using Var = IBINVariable;
INSTANTIATE_TEST_SUITE_P(
    Owners, UserMissingOwnershipTest,
    testing::Values(
        Row{"CatNumEncoder", kNumeric,
            [] { return OwnerOf<IBINEncoder>(new BINCatNumEncoder(2)); }},
        Row{"StringEncoder", kString, [] { return OwnerOf<IBINEncoder>(new BINStringEncoder(2)); }},
        Row{"ContVar", kNumeric,
            [] { return OwnerOf<Var>(new BINContVar("x", "", Var::RoleAttribute)); }},
        Row{"NumericCatVar", kNumeric, [] { return CatVar(Var::MeasureNumericCategorical); }},
        Row{"StringCatVar", kString, [] { return CatVar(Var::MeasureStringCategorical); }},
        Row{"CatVarOfUnknownLevel", kString, [] { return CatVar(Var::MeasureUnknown); }},
        Row{"WeightVar", kNumeric,
            [] { return OwnerOf<Var>(new BINWeightVar("w", "", Var::RoundClosest)); }}),
    RowName);

}  // namespace
