#include <gtest/gtest.h>

#include <cfloat>
#include <ostream>
#include <string>
#include <vector>

#include "cli/options/missingoption.h"
#include "cli/options/optionlist.h"
#include "cli/terminal/usageerror.h"
#include "csv/missingtexts.h"
#include "support/rowname.h"

namespace {

using MCBin::ParseMissingOption;
using MCBin::UsageError;

struct MissingExample {
  const char* name;
  const char* text;
  const char* column;
  std::vector<std::string> values;
  std::vector<double> interval;  // low and high, or nothing
};
void PrintTo(const MissingExample& row, std::ostream* os) { *os << row.name; }

class MissingOptionTest : public testing::TestWithParam<MissingExample> {};

TEST_P(MissingOptionTest, IsRead) {
  const MCBin::MissingRequest definition = ParseMissingOption(GetParam().text);
  EXPECT_EQ(definition.column, GetParam().column);
  EXPECT_EQ(definition.values, GetParam().values);
  std::vector<double> interval;
  if (definition.interval) interval = {definition.interval->low, definition.interval->high};
  EXPECT_EQ(interval, GetParam().interval);
}

INSTANTIATE_TEST_SUITE_P(
    Examples, MissingOptionTest,
    testing::Values(MissingExample{"Values", "age=-1,99", "age", {"-1", "99"}, {}},
                    MissingExample{"Interval", "age=99:120", "age", {}, {99, 120}},
                    MissingExample{"Both", "age=-1,99:120", "age", {"-1"}, {99, 120}},
                    MissingExample{"OpenBelow", "x=:0", "x", {}, {-DBL_MAX, 0}},
                    MissingExample{"OpenAbove", "x=1e6:", "x", {}, {1e6, DBL_MAX}},
                    MissingExample{"TimeIsNoInterval", "t=ab:cd,:", "t", {"ab:cd", ":"}, {}},
                    MissingExample{
                        "QuotedIsText", "t=\"10:30\",\"a,b\"", "t", {"10:30", "a,b"}, {}},
                    MissingExample{"EqualsSignInValue", "x=a=b", "x", {"a=b"}, {}},
                    MissingExample{"QuotedName", "\"a=b\"=1", "a=b", {"1"}, {}}),
    RowName);

TEST(MissingOption, RefusesWhatMakesNoSense) {
  for (const char* text :
       {"", "age", "=1", "age=", "age=5:1", "age=1:2,3:4", "age=\"1", "\"age=1", "age=\xFF"}) {
    EXPECT_THROW(ParseMissingOption(text), UsageError) << text;
  }
}

TEST(MissingTexts, KnowsEmptyFieldsAndTheList) {
  const MCBin::MissingTexts usual({"NA"});
  EXPECT_TRUE(usual.IsMissing({"", false}));
  EXPECT_TRUE(usual.IsMissing({"  ", false}));
  EXPECT_TRUE(usual.IsMissing({" NA ", false}));
  EXPECT_TRUE(usual.IsMissing({"NA", true}));
  EXPECT_FALSE(usual.IsMissing({"", true}));
  EXPECT_FALSE(usual.IsMissing({"NAN", false}));

  const MCBin::MissingTexts other({"?", "\"\""});
  EXPECT_TRUE(other.IsMissing({"?", false}));
  EXPECT_TRUE(other.IsMissing({"", true}));
  EXPECT_FALSE(other.IsMissing({"NA", false}));
}

TEST(OptionList, SplitsAtCommasOutsideQuotes) {
  using Names = std::vector<std::string>;
  EXPECT_EQ(MCBin::SplitOptionNames("a,b c,"), (Names{"a", "b c", ""}));
  EXPECT_EQ(MCBin::SplitOptionNames("\"a,b\",\"c\"\"d\""), (Names{"a,b", "c\"d"}));
  EXPECT_THROW(MCBin::SplitOptionNames("\"a"), UsageError);
  EXPECT_THROW(MCBin::SplitOptionNames("\"a\"b"), UsageError);
}

}  // namespace
