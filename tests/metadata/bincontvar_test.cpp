#include "metadata/bincontvar.h"

#include <gtest/gtest.h>

#include "metadata/binnumericusermissing.h"

namespace {

TEST(BINContVar, AssignmentTakesItsOwnCopyOfTheMissingValues) {
  BINContVar assigned("a", "", IBINVariable::RoleUndefined);
  {
    BINContVar other("b", "B", IBINVariable::RoleAttribute);
    auto missing = std::make_unique<BINNumericUserMissing>();
    missing->AddValue(9, "");
    EXPECT_TRUE(other.SetUserMissingInfo(missing.release()));
    assigned = other;
    EXPECT_NE(assigned.GetUserMissingInfo(), other.GetUserMissingInfo());
  }
  EXPECT_EQ(assigned.GetVariableName() + assigned.GetVariableLabel(), "bB");
  EXPECT_EQ(assigned.GetVariableRole(), IBINVariable::RoleAttribute);
  EXPECT_EQ(assigned.GetUserMissingInfo()->GetNDiscreteValues(), 1);
}

}  // namespace
