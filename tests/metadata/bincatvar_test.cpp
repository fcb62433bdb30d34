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
    BINCatVar variable = NumericCatVar(row.declared, row.encoded);
    EXPECT_EQ(variable.GetNumberOfCategories(), row.declared);
    EXPECT_EQ(variable.GetVarStatus(), row.status);
    EXPECT_EQ(variable.GetNumberOfCategories(), row.countAfterwards);
    EXPECT_EQ(variable.UpdateNumberOfCategories(), row.countAfterwards);
  }
}

}  // namespace
