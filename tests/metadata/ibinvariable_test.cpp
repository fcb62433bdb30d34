#include "metadata/ibinvariable.h"

#include <gtest/gtest.h>

#include <sstream>

namespace {

template <typename Enumeration>
std::string WordsFor(int first, int last) {
  std::ostringstream os;
  for (int value = first; value <= last; ++value) {
    MCBinning::Display(os, static_cast<Enumeration>(value));
  }
  return os.str();
}

TEST(IBINVariable, EnumerationsHaveWords) {
  EXPECT_EQ(WordsFor<IBINVariable::MeasureLevel>(-1, 5),
            "Measure level -1\nUnknown measure level\nContinuous\nNumeric Categorical\n"
            "String Categorical\nFrequency weight\nMeasure level 5\n");
  EXPECT_EQ(WordsFor<IBINVariable::VariableRole>(-1, 4),
            "Variable role -1\nUndefined variable role\nAttribute\nTarget\nFrequency weight\n"
            "Variable role 4\n");
  EXPECT_EQ(WordsFor<IBINVariable::BINWRoundingOption>(-1, 2),
            "\nTruncate to smaller int\nRound to closest int\n\n");
}

}  // namespace
