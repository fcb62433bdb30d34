#include "metadata/bincatvar.h"

#include <gtest/gtest.h>

#include <limits>

#include "metadata/bincatnumencoder.h"
#include "support/rowname.h"

namespace {

constexpr int kMaxInt = std::numeric_limits<int>::max();

BINCatVar NumericCatVar(int numberOfCategories, int encodedCategories) {
  BINCatVar variable("c", "label", numberOfCategories, IBINVariable::MeasureNumericCategorical,
                     IBINVariable::RoleTarget);
  auto& encoder = dynamic_cast<BINCatNumEncoder&>(*variable.GetEncoder());
  for (int i = 0; i < encodedCategories; ++i) encoder.Encode(i);
  return variable;
}

struct CountExample {
  const char* name;
  int declared;
  int encoded;
  int countAfterwards;
  int status;
};

void PrintTo(const CountExample& example, std::ostream* os) { *os << example.name; }

class CategoryCountTest : public testing::TestWithParam<CountExample> {};

TEST_P(CategoryCountTest, IsRaisedToTheEncodersWhenAsked) {
  const auto& [name, declared, encoded, countAfterwards, status] = GetParam();
  BINCatVar updated = NumericCatVar(declared, encoded);
  EXPECT_EQ(updated.GetNumberOfCategories(), declared);
  EXPECT_EQ(updated.UpdateNumberOfCategories(), countAfterwards);
  EXPECT_EQ(updated.GetNumberOfCategories(), countAfterwards);

  BINCatVar judged = NumericCatVar(declared, encoded);
  EXPECT_EQ(judged.GetVarStatus(), status);
  EXPECT_EQ(judged.GetNumberOfCategories(), countAfterwards);
}

INSTANTIATE_TEST_SUITE_P(
    Examples, CategoryCountTest,
    testing::Values(CountExample{"MoreSeenThanDeclared", 2, 3, 3, IBINVariable::VarStatusOk},
                    CountExample{"FewerSeenThanDeclared", 5, 1, 5, IBINVariable::VarStatusOk},
                    CountExample{"OneDeclared", 1, 0, 1, IBINVariable::VarStatusOneCategory},
                    CountExample{"OneSeen", 0, 1, 1, IBINVariable::VarStatusOneCategory},
                    CountExample{"None", 0, 0, 0, IBINVariable::VarStatusNoCategory},
                    CountExample{"Negative", -3, 0, 0, IBINVariable::VarStatusNoCategory},
                    CountExample{"Huge", kMaxInt, 0, kMaxInt, IBINVariable::VarStatusOk}),
    RowName);

TEST(BINCatVar, AssignmentTakesLevelAndEncoderAlong) {
  BINCatVar assigned("s", "", 9, IBINVariable::MeasureStringCategorical, IBINVariable::RoleTarget);
  assigned = NumericCatVar(2, 3);
  EXPECT_EQ(assigned.GetMeasureLevel(), IBINVariable::MeasureNumericCategorical);
  EXPECT_EQ(assigned.GetNumberOfCategories(), 2);
  EXPECT_EQ(assigned.UpdateNumberOfCategories(), 3);
}

}  // namespace
