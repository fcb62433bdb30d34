#include <gtest/gtest.h>

#include <cfloat>
#include <map>
#include <string>
#include <vector>

#include "cli/options/missingoption.h"
#include "cli/options/optionlist.h"
#include "cli/options/refineoptions.h"
#include "cli/terminal/usageerror.h"
#include "csv/missingtexts.h"

namespace {

using MCBin::ParseMissingOption;
using MCBin::UsageError;

TEST(MissingOption, IsRead) {
  struct Example {
    const char* text;
    const char* column;
    std::vector<std::string> values;
    std::vector<double> interval;  // low and high, or nothing
  };
  for (const auto& [text, column, values, interval] :
       {Example{"age=-1,99", "age", {"-1", "99"}, {}},
        {"age=99:120", "age", {}, {99, 120}},
        {"age=-1,99:120", "age", {"-1"}, {99, 120}},
        {"x=:0", "x", {}, {-DBL_MAX, 0}},
        {"x=1e6:", "x", {}, {1e6, DBL_MAX}},
        {"t=ab:cd,:", "t", {"ab:cd", ":"}, {}},
        {"t=\"10:30\",\"a,b\"", "t", {"10:30", "a,b"}, {}},
        {"x=a=b", "x", {"a=b"}, {}},
        {"\"a=b\"=1", "a=b", {"1"}, {}}}) {
    SCOPED_TRACE(text);
    const MCBin::MissingRequest definition = ParseMissingOption(text);
    EXPECT_EQ(definition.column, column);
    EXPECT_EQ(definition.values, values);
    std::vector<double> read;
    if (definition.interval) read = {definition.interval->low, definition.interval->high};
    EXPECT_EQ(read, interval);
  }
}

TEST(MissingOption, RefusesWhatMakesNoSense) {
  for (const char* text :
       {"", "age", "=1", "age=", "age=5:1", "age=1:2,3:4", "age=\"1", "\"age=1", "age=\xFF"}) {
    EXPECT_THROW(ParseMissingOption(text), UsageError) << text;
  }
}

TEST(Refinement, ReadsCutPointsByName) {
  CLI::App app;
  MCBin::RawRefinement raw;
  MCBin::AddRefinement(app, raw);
  EXPECT_FALSE(MCBin::ParseRefinement(raw));
  app.parse("--breaks age=30,45 --breaks 'a=' --keep '\"b=c\"=-1e3' --keep age=7 --monotonic peak");
  const auto settings = MCBin::ParseRefinement(raw);
  ASSERT_TRUE(settings);
  using Lists = std::map<std::string, std::vector<double>>;
  EXPECT_EQ(settings->breaks, (Lists{{"age", {30.0, 45.0}}, {"a", {}}}));
  EXPECT_EQ(settings->keep, (Lists{{"b=c", {-1000.0}}, {"age", {7.0}}}));
  EXPECT_EQ(settings->trend, MCBinModel::RateTrend::kPeak);
  for (const char* text : {"age", "age=x", "=1", "age=1,,2", "age=inf"}) {
    raw.keep = {text};
    EXPECT_THROW(MCBin::ParseRefinement(raw), UsageError) << text;
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

  const MCBin::MissingTexts number({"-999"});
  for (const char* text : {"-999", "-999.0", " -9.99e2"}) {
    EXPECT_TRUE(number.IsMissing({text, false})) << text;
  }
  EXPECT_FALSE(number.IsMissing({"999", false}));

  const MCBin::MissingTexts infinity({"inf"});
  for (const char* text : {"Inf", "+INFINITY", " 1e999"}) {
    EXPECT_TRUE(infinity.IsMissing({text, false})) << text;
  }
  EXPECT_FALSE(infinity.IsMissing({"-inf", false}));
  EXPECT_FALSE(infinity.IsMissing({"info", false}));
}

TEST(MissingTexts, ArePlainNumbersWhateverTheMarksOfTheFile) {
  EXPECT_EQ(MCBin::PlainMissingTexts({"?", "-999,50", "1.234", "1,234", "1.5"}, {',', '.'}),
            (std::vector<std::string>{"?", "-999.5", "1234", "1.234", "1.5"}));
  const MCBin::MissingTexts plain({"1.234"});
  EXPECT_TRUE(plain.IsMissing({"1,2340", false, 1.234}));
  EXPECT_FALSE(plain.IsMissing({"1.234", false, 1234.0})) << "a number of another value";
  EXPECT_TRUE(plain.IsMissing({"1.234", false, std::nullopt, true})) << "a text";
}

TEST(OptionList, SplitsAtCommasOutsideQuotes) {
  using Names = std::vector<std::string>;
  EXPECT_EQ(MCBin::SplitOptionNames("a,b c,"), (Names{"a", "b c", ""}));
  EXPECT_EQ(MCBin::SplitOptionNames("\"a,b\",\"c\"\"d\""), (Names{"a,b", "c\"d"}));
  EXPECT_THROW(MCBin::SplitOptionNames("\"a"), UsageError);
  EXPECT_THROW(MCBin::SplitOptionNames("\"a\"b"), UsageError);
}

}  // namespace
