#include <gtest/gtest.h>
#include <signal.h>

#include <ostream>
#include <string>
#include <vector>

#include "cli/program.h"
#include "support/rowname.h"

namespace {

using Words = std::vector<std::string>;

// Bins made by hand: two attributes, one of them of categories, and a target of two classes.
const char kBins[] = R"({
  "format": "mcbin-bins", "version": 1, "tool": "", "algorithm": "supervised", "closed": "right",
  "settings": {"prebin_above": 0, "prebins": 2, "small_bins": 0},
  "source": {"name": "", "delimiter": ",", "na": ["NA"], "records": 8,
             "dropped": {"missing_weight": 0, "zero_weight": 0, "weight_rounded_to_zero": 0}},
  "attributes": [
    {"name": "a", "kind": "continuous", "user_missing": {"values": [9], "interval": {"low": 90}}},
    {"name": "c", "kind": "string-categorical", "categories": ["x", "y, z"],
     "user_missing": {"values": ["q"]}}],
  "targets": [{"name": "t", "kind": "string-categorical", "categories": ["yes", "no"]}],
  "results": [
    {"attribute": "a", "target": "t", "status": {"code": 0, "severity": "ok", "text": "ok"},
     "cut_points": [1, 2.5], "bin_weights": [4, 2, 2], "class_weights": [[3, 1], [0, 2], [1, 1]],
     "valid_weight": 8, "weight_with_missing": 8, "distinct_values": 5},
    {"attribute": "c", "target": "t", "status": {"code": 0, "severity": "ok", "text": "ok"},
     "cut_points": [0], "bin_weights": [4, 4], "class_weights": [[2, 2], [2, 2]],
     "valid_weight": 8, "weight_with_missing": 8, "distinct_values": 2}]})";

struct ApplyExample {
  const char* name;
  Words options;
  std::string input;
  std::string output;
};
void PrintTo(const ApplyExample& row, std::ostream* os) { *os << row.name; }

class ApplyTest : public testing::TestWithParam<ApplyExample> {};

TEST_P(ApplyTest, WritesBins) {
  const Program program;
  program.Write("bins.json", kBins);
  Words arguments = {"apply", "bins.json"};
  arguments.insert(arguments.end(), GetParam().options.begin(), GetParam().options.end());
  const auto outcome = program.Run(arguments, GetParam().input);
  EXPECT_EQ(outcome.exitCode, 0) << outcome.err;
  EXPECT_EQ(outcome.out, GetParam().output);
}

INSTANTIATE_TEST_SUITE_P(
    Examples, ApplyTest,
    testing::Values(
        ApplyExample{"BordersAndEnds",
                     {},
                     "c,a\nx,1\nx,1.0000000000000002\nx,2.5\nx,-1e999\nx,inf\n",
                     "c,a,a_bin,c_bin\nx,1,0,0\nx,1.0000000000000002,1,0\nx,2.5,1,0\n"
                     "x,-1e999,0,0\nx,inf,,0\n"},
        ApplyExample{"Missing",
                     {"--missing-as", "?"},
                     "a,c\n,x\nNA,x\nnan,x\n9.0,x\n90,x\n1e308,q\n1,other\n1,\n",
                     "a,c,a_bin,c_bin\n,x,?,0\nNA,x,?,0\nnan,x,?,0\n9.0,x,?,0\n90,x,?,0\n"
                     "1e308,q,?,?\n1,other,0,?\n1,,0,?\n"},
        ApplyExample{"Labels",
                     {"--as", "label", "--suffix", " band"},
                     "a,c\n2,\"y, z\"\n7,x\n",
                     "a,c,a band,c band\n2,\"y, z\",\"(1, 2.5]\",\"{\"\"y, z\"\"}\"\n"
                     "7,x,\"(2.5, +inf)\",{x}\n"},
        // Events ("yes") 3, 0, 1 of 4, others 1, 2, 1 of 4.
        ApplyExample{"WeightOfEvidence",
                     {"--as", "woe", "--replace"},
                     "c,a,t\nx,0,\nx,2,\nx,3,\n",
                     "c,a,t\n0,1.0986122886681098,\n0,-inf,\n0,0,\n"},
        ApplyExample{
            "KeepsTheOtherColumns",
            {"--target", "t"},
            "\xEF\xBB\xBF\"no\"\"te\",a,c,\"\",\r\n\"x\ny\",3,x,\"\",ab\"c\r\n, 0 ,\"x\",,\r\n",
            "\"no\"\"te\",a,c,\"\",,a_bin,c_bin\n\"x\ny\",3,x,\"\",\"ab\"\"c\",2,0\n"
            ", 0 ,\"x\",,,0,0\n"},
        ApplyExample{"OtherDelimiterAndTexts",
                     {"--delimiter", ";", "--na", "-", "--as", "label"},
                     "a;c\n-;\"x\"\n0;x\n",
                     "a;c;a_bin;c_bin\n-;\"x\";;{x}\n0;x;(-inf, 1];{x}\n"},
        ApplyExample{"HeaderOnly", {}, "a,c\n", "a,c,a_bin,c_bin\n"}),
    RowName);

struct Refusal {
  const char* name;
  Words options;
  std::string input;
  int exitCode;
  std::string message;
};
void PrintTo(const Refusal& row, std::ostream* os) { *os << row.name; }

class ApplyRefusalTest : public testing::TestWithParam<Refusal> {};

TEST_P(ApplyRefusalTest, SaysWhy) {
  const Program program;
  program.Write("bins.json", kBins);
  program.Write("in.csv", GetParam().input);
  const auto outcome = program.Run(GetParam().options);
  EXPECT_EQ(outcome.exitCode, GetParam().exitCode);
  EXPECT_NE(outcome.err.find(GetParam().message), std::string::npos) << outcome.err;
}

INSTANTIATE_TEST_SUITE_P(
    Refused, ApplyRefusalTest,
    testing::Values(
        Refusal{"MissingColumn",
                {"apply", "bins.json", "in.csv"},
                "a,cc\n1,x\n",
                1,
                "in.csv: there is no column 'c'; did you mean 'a', 'cc'?"},
        Refusal{"NotANumber",
                {"apply", "bins.json", "in.csv"},
                "a,c\n1,x\none,x\n",
                1,
                "in.csv:3: 'one' in column 'a' is not a number"},
        Refusal{"NameTaken",
                {"apply", "bins.json", "in.csv"},
                "a,c,c_bin\n1,x,0\n",
                1,
                "there is a column 'c_bin' already"},
        Refusal{"UnknownTarget",
                {"apply", "--target", "u", "bins.json", "in.csv"},
                "a,c\n",
                1,
                "bins.json: no bins for the target 'u'; the targets are 't'"},
        Refusal{"SwappedFiles",
                {"apply", "in.csv", "bins.json"},
                "a,c\n",
                1,
                "in.csv: this is not a bin file"},
        Refusal{"NoHeader", {"apply", "bins.json", "in.csv"}, "", 1, "there is no header row"},
        Refusal{"BothFromPipe", {"apply", "-"}, "", 2, "cannot both come from standard input"},
        Refusal{"SuffixAndReplace",
                {"apply", "bins.json", "--replace", "--suffix", "x"},
                "",
                2,
                "--suffix excludes --replace"},
        Refusal{"UnknownForm", {"apply", "bins.json", "--as", "number"}, "", 2, "--as"},
        Refusal{"NoBinFile", {"evaluate"}, "", 2, "BINS is required"},
        Refusal{"MissingTarget",
                {"evaluate", "bins.json", "in.csv"},
                "a,c\n1,x\n",
                1,
                "in.csv: there is no column 't'"},
        Refusal{"UnknownWeight",
                {"evaluate", "--weight", "w", "bins.json", "in.csv"},
                "a,c,t\n1,x,yes\n",
                1,
                "in.csv: there is no column 'w'"}),
    RowName);

TEST(Apply, TellsOfUnknownCategories) {
  const Program program;
  program.Write("bins.json", kBins);
  const auto outcome = program.Run({"apply", "bins.json"}, "a,c\n1,x\n1,new\n1,q\n1,new\n");
  EXPECT_EQ(outcome.err,
            "mcbin: column 'c': values that the bin file does not know count as missing: 2, the "
            "first is 'new' in line 3\n");
}

TEST(Apply, IsCancelledWhileItsPipeIsSilent) {
  const Program program;
  program.Write("bins.json", kBins);
  const auto outcome = program.RunAndSignal({"apply", "bins.json"}, SIGTERM);
  EXPECT_EQ(outcome.exitCode, 130);
  EXPECT_EQ(outcome.err, "mcbin: cancelled\n");
}

// A bin file made by hand, so that every number can be followed.
TEST(Evaluate, PrintsBothSides) {
  const Program program;
  program.Write("bins.json", kBins);
  program.Write("new.csv",
                "a,c,t,w\n0,x,yes,2\n2,x,no,1\n3,x,yes,1\n9,x,no,5\n3,x,maybe,5\n5,x,no,0\n");
  const auto outcome = program.Run({"evaluate", "--weight", "w", "bins.json", "new.csv"});
  EXPECT_EQ(outcome.exitCode, 0);
  for (const char* part :
       {"records, target t; evidence is above 0 where yes is more frequent than overall\n",
        "  a             3     0.0000     -  0.8113  differ\n",
        "  c             2       +inf     -  0.0000  differ\n",
        "  data: weight 4 valid, 10 missing; from 0 to 3; entropy 0.0000, gain 0.8113 bits; "
        "information value +inf\n",
        "  (-inf, 1]         4     2  50.0%  50.0%    3     2   1     0    1.0986  +inf\n",
        "  {\"y, z\"}         4     0  50.0%    0.0%    2     0   2     0    0.0000       -\n"}) {
    EXPECT_NE(outcome.out.find(part), std::string::npos) << part << outcome.out;
  }
  EXPECT_NE(outcome.err.find("1 of 6 records dropped for their weight"), std::string::npos);
}

}  // namespace
