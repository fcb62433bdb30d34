#include "metadata/bincatvar.h"

#include <gtest/gtest.h>

#include <limits>

#include "metadata/bincatnumencoder.h"

namespace {

BINCatVar NumericCatVar(int numberOfCategories, int encodedCategories) {
  BINCatVar variable("c", "label", numberOfCategories, IBINVariable::MeasureNumericCategorical,
                     IBINVariable::RoleTarget);
  auto& encoder = dynamic_cast<BINCatNumEncoder&>(*variable.GetEncoder());
  for (int i = 0; i < encodedCategories; ++i) encoder.Encode(i);
  return variable;
}

TEST(BINCatVar, CountIsRaisedToTheEncodersWhenAsked) {
  struct Row {
    int declared, encoded, countAfterwards, status;
  };
  constexpr int kMaxInt = std::numeric_limits<int>::max();
  for (const Row& row : {Row{2, 3, 3, IBINVariable::VarStatusOk},
                         {5, 1, 5, IBINVariable::VarStatusOk},
                         {1, 0, 1, IBINVariable::VarStatusOneCategory},
                         {0, 1, 1, IBINVariable::VarStatusOneCategory},
                         {-3, 0, 0, IBINVariable::VarStatusNoCategory},
                         {kMaxInt, 0, kMaxInt, IBINVariable::VarStatusOk}}) {
    SCOPED_TRACE(testing::Message() << row.declared << " declared, " << row.encoded << " encoded");
    BINCatVar updated = NumericCatVar(row.declared, row.encoded);
    EXPECT_EQ(updated.GetNumberOfCategories(), row.declared);
    EXPECT_EQ(updated.UpdateNumberOfCategories(), row.countAfterwards);
    BINCatVar judged = NumericCatVar(row.declared, row.encoded);
    EXPECT_EQ(judged.GetVarStatus(), row.status);
    EXPECT_EQ(judged.GetNumberOfCategories(), row.countAfterwards);
  }
}

TEST(BINCatVar, AssignmentTakesLevelAndEncoderAlong) {
  BINCatVar assigned("s", "", 9, IBINVariable::MeasureStringCategorical, IBINVariable::RoleTarget);
  assigned = NumericCatVar(2, 3);
  EXPECT_EQ(assigned.GetMeasureLevel(), IBINVariable::MeasureNumericCategorical);
  EXPECT_EQ(assigned.GetNumberOfCategories(), 2);
  EXPECT_EQ(assigned.UpdateNumberOfCategories(), 3);
}

}  // namespace
