#include "cli/inputvariables.h"

#include <gtest/gtest.h>

#include <cstdio>
#include <memory>
#include <ostream>
#include <string>
#include <vector>

#include "cli/columnselection.h"
#include "cli/inputerror.h"
#include "cli/usageerror.h"
#include "support/rowname.h"
#include "support/tempdir.h"

namespace {

using MCBin::RunOptions;
using MCBin::VariableInfo;
using MCBin::VariableKind;

std::string Describe(const VariableInfo& variable) {
  if (variable.kind == VariableKind::kContinuous) return variable.name;
  std::string text =
      variable.name + (variable.kind == VariableKind::kNumericCategorical ? "=num{" : "=text{");
  for (std::size_t code = 0; code < variable.GetCategoryCount(); ++code) {
    text += (code == 0 ? "" : " ") + variable.GetLabel(code);
  }
  return text + "}";
}

// "target | attribute attribute", categorical ones with their categories in code order; or
// the message that refuses the input.
std::string Scan(const std::string& content, const RunOptions& options) {
  const std::unique_ptr<FILE, int (*)(FILE*)> file(std::tmpfile(), std::fclose);
  std::fwrite(content.data(), 1, content.size(), file.get());
  std::rewind(file.get());
  try {
    MCBin::CsvReader reader(fileno(file.get()), "f", options.delimiter);
    reader.Next();
    std::vector<std::string> notes;
    const auto requests = SelectColumns(MCBin::ColumnNames(reader), options, notes);
    MCBin::ProgressBar progress(false);
    const TempDir directory;
    const auto scan =
        ScanInput(reader, requests, options.rounding, MCBin::MissingTexts(options.missingTexts),
                  directory.Path(), progress);
    const auto variables = MakeInputVariables("f", requests, scan, options.rounding, notes);
    std::string text;
    for (const VariableInfo& target : variables.targets) text += Describe(target) + " ";
    text += "|";
    for (const VariableInfo& attribute : variables.attributes) text += " " + Describe(attribute);
    return text;
  } catch (const MCBin::InputError& error) {
    return error.what();
  } catch (const MCBin::UsageError& error) {
    return std::string("usage: ") + error.what();
  }
}

std::string Rows(int count, const char* between) {
  std::string rows = "a,y\n";
  for (int i = 0; i < count; ++i) rows += std::to_string(i) + between + std::to_string(i) + "\n";
  return rows;
}

struct ScanExample {
  const char* name;
  std::string content;
  RunOptions options;
  std::string expected;  // or how it begins
};
void PrintTo(const ScanExample& row, std::ostream* os) { *os << row.name; }

RunOptions With(void (*change)(RunOptions&)) {
  RunOptions options;
  options.targets = {"y"};
  change(options);
  return options;
}
RunOptions Plain() {
  return With([](RunOptions&) {});
}

class InputVariablesTest : public testing::TestWithParam<ScanExample> {};

TEST_P(InputVariablesTest, FindsKindsAndCategories) {
  const std::string result = Scan(GetParam().content, GetParam().options);
  EXPECT_EQ(result.substr(0, GetParam().expected.size()), GetParam().expected) << result;
}

INSTANTIATE_TEST_SUITE_P(
    Kinds, InputVariablesTest,
    testing::Values(
        ScanExample{"TextsAreLeftOut", "a,t,y\n1,q,x\n,NA,z\n", Plain(), "y=text{x z} | a"},
        ScanExample{"CodesFollowTheirFirstAppearance", "a,y\n1,z\n2,x\n3,z\n", Plain(),
                    "y=text{z x} | a"},
        ScanExample{"NumbersAreOneCategoryHoweverWritten", "a,y\n1,01\n2,1.0\n3,0\n", Plain(),
                    "y=num{1 0} | a"},
        ScanExample{"OneTextMakesTextsOfAll", "a,y\n1,01\n2,1.0\n3,x\n", Plain(),
                    "y=text{01 1.0 x} | a"},
        ScanExample{"NanIsMissingAmongNumbers", "a,y\n1,1\nnan,nan\n3,2\n", Plain(),
                    "y=num{1 2} | a"},
        ScanExample{"NanIsATextAmongTexts", "a,y\n1,nan\n2,x\n", Plain(), "y=text{nan x} | a"},
        ScanExample{"OnlyMissingIsContinuous", "a,y\n,x\nNA,z\n", Plain(), "y=text{x z} | a"},
        ScanExample{"QuotedEmptyIsACategory", "a,y\n1,\"\"\n2,x\n3,\n", Plain(), "y=text{ x} | a"},
        ScanExample{"UnnamedColumnIsNotBinned", ",a,y\n1,1,x\n2,2,z\n", Plain(), "y=text{x z} | a"},
        ScanExample{"OptedInByCategory", "a,t,y\n1,q,x\n2,r,z\n",
                    With([](RunOptions& o) { o.categorical = {"t"}; }),
                    "y=text{x z} | a t=text{q r}"},
        ScanExample{"CategoricalNumbers", "a,y\n1,x\n2,z\n",
                    With([](RunOptions& o) { o.categorical = {"a"}; }), "y=text{x z} | a=num{1 2}"},
        ScanExample{"AttributesInTheOrderGiven", "a,b,c,y\n1,1,1,x\n2,2,2,z\n",
                    With([](RunOptions& o) {
                      o.attributes = {"c", "a"};
                    }),
                    "y=text{x z} | c a"},
        ScanExample{"SeveralTargets", "a,y,v\n1,x,1\n2,z,2\n", With([](RunOptions& o) {
                      o.targets = {"v", "y"};
                    }),
                    "v=num{1 2} y=text{x z} | a"},
        ScanExample{
            "UserMissingIsNoCategory", "a,y\n1,9\n2,1\n3,2\n4,55\n",
            With([](RunOptions& o) { o.missing = {MCBin::ParseMissingDefinition("y=9,50:60")}; }),
            "y=num{1 2} | a"},
        ScanExample{"UserMissingTextIsNoCategory", "a,y\n1,?\n2,x\n3,z\n",
                    With([](RunOptions& o) { o.missing = {MCBin::ParseMissingDefinition("y=?")}; }),
                    "y=text{x z} | a"},
        ScanExample{"DroppedRecordsAddNoCategory", "a,y,w\n1,q,0\n2,x,1\n3,z,2\n",
                    With([](RunOptions& o) { o.weight = "w"; }), "y=text{x z} | a"},
        ScanExample{"DroppedRecordsAddNoNumber", "a,y,w\n1,7,0\n2,1,1\n3,2,2\n",
                    With([](RunOptions& o) { o.weight = "w"; }), "y=num{1 2} | a"},
        ScanExample{"ManyTextsOfFewNumbers", "a,y\n1," + std::string(300, '0') + "1\n2,2\n",
                    Plain(), "y=num{1 2} | a"},
        ScanExample{"MostCategories", Rows(256, ","), Plain(), "y=num{0 1 2"}),
    RowName);

INSTANTIATE_TEST_SUITE_P(
    Refused, InputVariablesTest,
    testing::Values(
        ScanExample{"TooManyNumbers", Rows(257, ","), Plain(),
                    "f:258: column 'y': a target has at most 256 different values, '256'"},
        ScanExample{"TooManyTexts", Rows(257, ",t"), Plain(), "f:258: column 'y': a target has"},
        ScanExample{"TooLongText", "a,y\n1," + std::string(5000, 't') + "\n", Plain(),
                    "f:2: column 'y': a target has values of at most 4096 bytes"},
        ScanExample{"OneClass", "a,y\n1,x\n2,x\n", Plain(), "f: the target 'y' has a single"},
        ScanExample{"NamedTextAttribute", "a,y\n1,x\nq,z\n",
                    With([](RunOptions& o) { o.attributes = {"a"}; }),
                    "f:3: 'q' in column 'a' is not a number"},
        ScanExample{"TextInContinuous", "a,y\n1,x\nq,z\n",
                    With([](RunOptions& o) { o.continuous = {"a"}; }),
                    "f:3: 'q' in column 'a' is not a number"},
        ScanExample{"Infinity", "a,y\n1,x\n-inf,z\n", Plain(), "f:3: the number '-inf'"},
        ScanExample{"NothingToBin", "a,y\nq,x\nr,z\n", Plain(), "f: no column can be binned"},
        ScanExample{"NegativeWeight", "a,y,w\n1,x,1\n2,z,-1\n",
                    With([](RunOptions& o) { o.weight = "w"; }), "f:3: the weight '-1'"},
        ScanExample{"TargetTwice", "a,y\n1,x\n", With([](RunOptions& o) {
                      o.targets = {"y", "y"};
                    }),
                    "usage: column 'y' is named twice"},
        ScanExample{"TargetIsAttribute", "a,y\n1,x\n",
                    With([](RunOptions& o) { o.attributes = {"y"}; }),
                    "usage: column 'y' cannot be a target and an attribute"},
        ScanExample{"BothKinds", "a,y\n1,x\n", With([](RunOptions& o) {
                      o.categorical = {"a"};
                      o.continuous = {"a"};
                    }),
                    "usage: column 'a' is both"},
        ScanExample{"MissingTextInNumbers", "a,y\n1,x\n2,z\n", With([](RunOptions& o) {
                      o.missing = {MCBin::ParseMissingDefinition("a=none")};
                    }),
                    "usage: --missing 'a': 'none' is not a number"},
        ScanExample{"LatinOneCategory", "a,y\n1,\xE4\n2,x\n", Plain(),
                    "f: the value '\\xE4' in column 'y' is not UTF-8"}),
    RowName);

}  // namespace
