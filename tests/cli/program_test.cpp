#include "cli/program.h"

#include <gtest/gtest.h>
#include <signal.h>

#include <fstream>
#include <map>
#include <nlohmann/json.hpp>
#include <ostream>
#include <sstream>
#include <string>
#include <vector>

#include "support/rowname.h"

namespace {

using nlohmann::json;
using Words = std::vector<std::string>;

const std::string kIris = MCBINNING_EXAMPLES_DIR "/iris.csv";
const std::string kTestData = MCBINNING_TEST_DATA_DIR "/";

Words operator+(Words words, const Words& more) {
  words.insert(words.end(), more.begin(), more.end());
  return words;
}

// The bin file of a run that must succeed.
json BinsOf(const Words& arguments, const std::string& input = "") {
  const Program program;
  const Program::Outcome outcome = program.Run(arguments + Words{"--json", "-"}, input);
  EXPECT_EQ(outcome.exitCode, 0) << outcome.err;
  EXPECT_EQ(program.Files(), Words{});
  return json::parse(outcome.out);
}

const json& ResultOf(const json& bins, const std::string& attribute, const std::string& target) {
  for (const json& result : bins["results"]) {
    if (result["attribute"] == attribute && result.value("target", "") == target) return result;
  }
  throw std::runtime_error("no result for " + attribute);
}

TEST(Supervised, FindsTheBinsOfIris) {
  const json bins = BinsOf({"supervised", "--target", "species", kIris});
  struct Expected {
    std::vector<double> cuts;
    std::vector<std::vector<double>> classWeights;
    double entropy;
  };
  const std::map<std::string, Expected> expected = {
      {"sepal_length", {{5.5, 6.1}, {{47, 11, 1}, {3, 23, 10}, {0, 16, 39}}, 0.9326788026552858}},
      {"sepal_width", {{3.3}, {{19, 49, 45}, {31, 1, 5}}, 1.3018365115523247}},
      {"petal_length", {{1.9, 4.7}, {{50, 0, 0}, {0, 44, 1}, {0, 6, 49}}, 0.22841749995118951}},
      {"petal_width", {{0.6, 1.7}, {{50, 0, 0}, {0, 49, 5}, {0, 1, 45}}, 0.2065597528302168}}};
  ASSERT_EQ(bins["results"].size(), expected.size());
  for (const auto& [name, bin] : expected) {
    const json& result = ResultOf(bins, name, "species");
    EXPECT_EQ(result["cut_points"], bin.cuts) << name;
    EXPECT_EQ(result["class_weights"], bin.classWeights) << name;
    EXPECT_DOUBLE_EQ(result["model_entropy"], bin.entropy) << name;
    EXPECT_NEAR(result["information_gain"], 1.584962500721156 - bin.entropy, 1e-12) << name;
    EXPECT_EQ(result["status"]["severity"], "ok") << name;
  }
}

TEST(Supervised, PrintsTheMostInformativeFirst) {
  const Program program;
  const auto outcome = program.Run({"supervised", "--target", "species", kIris});
  EXPECT_EQ(outcome.exitCode, 0);
  std::size_t last = 0;
  for (const char* line :
       {"  petal_width   1.3784     3  0.6, 1.7    ok", "  petal_length  1.3565",
        "  sepal_length  0.6523", "  sepal_width   0.2831", "\npetal_width by species\n",
        "  (0.6, 1.7]       54   36.0%       0    0.0%               49  90.7% ███▋          5   "
        "9.3% ▍"}) {
    const std::size_t at = outcome.out.find(line);
    ASSERT_NE(at, std::string::npos) << line << "\n" << outcome.out;
    EXPECT_GT(at, last) << line;
    last = at;
  }
}

TEST(Supervised, LeftClosedIntervalsAreWrittenSo) {
  const Program program;
  const auto outcome =
      program.Run({"supervised", "--target", "species", "--closed", "left", "--quiet", kIris});
  EXPECT_NE(outcome.out.find("(-inf, 1)"), std::string::npos) << outcome.out;
  EXPECT_NE(outcome.out.find("[1, 1.8)"), std::string::npos) << outcome.out;
  EXPECT_EQ(outcome.err, "");
}

TEST(Supervised, WeightsStandForRepeatedCases) {
  const Words common = {"supervised", "--target", "death", "--attributes", "age,creatinine"};
  const json plain = BinsOf(common + Words{kTestData + "flchain.csv"});
  const json weighted =
      BinsOf(common + Words{"--weight", "weight", kTestData + "flchain_weighted.csv"});
  for (const char* name : {"age", "creatinine"}) {
    const json& a = ResultOf(plain, name, "death");
    const json& b = ResultOf(weighted, name, "death");
    for (const char* field : {"cut_points", "bin_weights", "valid_weight", "weight_with_missing",
                              "distinct_values", "minimum", "maximum"}) {
      EXPECT_EQ(a[field], b[field]) << name << " " << field;
    }
    EXPECT_DOUBLE_EQ(a["model_entropy"], b["model_entropy"]) << name;
  }
}

TEST(Supervised, SeveralTargetsAgreeWithRunsOfTheirOwn) {
  const Words common = {"supervised", "--attributes", "age,kappa,creatinine"};
  const Words file = {kTestData + "flchain.csv"};
  const json both = BinsOf(common + Words{"--target", "death,mgus", "--target", "sex"} + file);
  ASSERT_EQ(both["results"].size(), 9u);
  for (const char* target : {"death", "mgus", "sex"}) {
    const json alone = BinsOf(common + Words{"--target", target} + file);
    for (const json& result : alone["results"]) {
      EXPECT_EQ(ResultOf(both, result["attribute"], target), result) << target;
    }
  }
}

TEST(Supervised, ReadsStandardInputLikeAFile) {
  std::ostringstream content;
  content << std::ifstream(kIris).rdbuf();
  json fromPipe = BinsOf({"supervised", "--target", "species"}, content.str());
  EXPECT_EQ(fromPipe["source"]["name"], "standard input");
  EXPECT_EQ(fromPipe["results"], BinsOf({"supervised", "--target", "species", kIris})["results"]);
}

TEST(Supervised, MergesSmallBinsAndPreBinsWhenAsked) {
  const Words common = {"supervised", "--target", "death", "--attributes", "age"};
  const Words file = {kTestData + "flchain.csv"};
  const json all = BinsOf(common + file)["results"][0];
  for (const Words& option :
       {Words{"--small-bins", "0.9"}, Words{"--prebin-above", "20", "--prebins", "4"}}) {
    const json fewer = BinsOf(common + option + file)["results"][0];
    EXPECT_LT(fewer["cut_points"].size(), all["cut_points"].size()) << option[0];
    EXPECT_EQ(fewer["valid_weight"], all["valid_weight"]) << option[0];
  }
}

TEST(Supervised, CountsDroppedRecords) {
  const Program program;
  program.Write("w.csv", "a,y,w\n1,x,1\n2,z,2\n3,x,0\n4,x,\n5,x,0.4\n6,x,99\n");
  const auto outcome =
      program.Run({"supervised", "--target", "y", "--weight", "w", "--missing", "w=99", "w.csv"});
  EXPECT_EQ(outcome.exitCode, 0);
  EXPECT_NE(outcome.err.find("6 records read, 4 dropped for their weight (2 missing, 1 zero, 1 "
                             "rounded to zero)"),
            std::string::npos)
      << outcome.err;
}

TEST(Supervised, UserMissingValuesAreLeftOutOfTheBins) {
  std::string content = "a,y\n";
  for (int i = 0; i < 50; ++i) content += std::to_string(i) + (i < 25 ? ",x\n" : ",z\n");
  content += "99,x\n1000,x\n-5,z\n";
  const json bins = BinsOf(
      {"supervised", "--target", "y", "--missing", "a=99,1000:", "--missing", "y=q"}, content);
  const json& result = ResultOf(bins, "a", "y");
  EXPECT_EQ(result["cut_points"], json({24.0}));
  EXPECT_EQ(result["valid_weight"], 51.0);
  EXPECT_EQ(result["weight_with_missing"], 53.0);
  EXPECT_EQ(bins["attributes"][0]["user_missing"],
            json({{"values", {99}}, {"interval", {{"low", 1000}}}}));
  EXPECT_EQ(bins["targets"][0]["user_missing"], json({{"values", {"q"}}}));
}

TEST(Supervised, AResultWithoutCasesHasNoNumbersThatDoNotExist) {
  const json bins = BinsOf({"supervised", "--target", "y"}, "a,b,y\n1,,x\n2,,z\n");
  const json& result = ResultOf(bins, "b", "y");
  EXPECT_EQ(result["status"],
            json({{"code", 120015}, {"severity", "warning"}, {"text", "no valid case"}}));
  EXPECT_EQ(result["bin_weights"], json::array());
  for (const char* field : {"minimum", "maximum", "model_entropy", "information_gain"}) {
    EXPECT_FALSE(result.contains(field)) << field;
  }
}

TEST(EqualFrequency, DividesEveryNumericColumn) {
  std::string content = "a,t\n";
  for (int i = 1; i <= 100; ++i) content += std::to_string(i) + ",x\n";
  const json bins = BinsOf({"equal-frequency", "--bins", "5"}, content);
  ASSERT_EQ(bins["results"].size(), 1u);
  EXPECT_EQ(bins["results"][0]["bin_weights"], json({20.0, 20.0, 20.0, 20.0, 20.0}));
  EXPECT_FALSE(bins["results"][0].contains("class_weights"));
  EXPECT_FALSE(bins.contains("targets"));

  const auto outcome = Program().Run({"equal-frequency", "--bins", "4"}, content);
  EXPECT_NE(outcome.out.find("ideal share 25.0%"), std::string::npos) << outcome.out;
  EXPECT_NE(outcome.out.find("  a             4       0.0%"), std::string::npos) << outcome.out;
}

TEST(BinFile, SaysWhatMadeIt) {
  const Program program;
  program.Write("bins.json", "an older file");
  const std::string name = "gr\"o\\\xC3\xB6\t\xC3\x9F";
  program.Write(
      "d.csv", "a;" + std::string("\"gr\"\"o\\\xC3\xB6\t\xC3\x9F\"") + "\n1;\"l 1\"\n2;\"l\n2\"\n");
  const auto outcome =
      program.Run({"supervised", "--target", "\"gr\"\"o\\\xC3\xB6\t\xC3\x9F\"", "--delimiter", ";",
                   "--closed", "left", "--json", "bins.json", "--small-bins", "0.25", "d.csv"});
  ASSERT_EQ(outcome.exitCode, 0) << outcome.err;
  EXPECT_EQ(program.Files(), (Words{"bins.json", "d.csv"}));
  const json bins = json::parse(program.Read("bins.json"));
  EXPECT_EQ(bins["format"], "mcbin-bins");
  EXPECT_EQ(bins["version"], 1);
  EXPECT_EQ(bins["algorithm"], "supervised");
  EXPECT_EQ(bins["closed"], "left");
  EXPECT_EQ(bins["settings"],
            json({{"prebin_above", 1000}, {"prebins", 1000}, {"small_bins", 0.25}}));
  EXPECT_EQ(bins["source"]["name"], "d.csv");
  EXPECT_EQ(bins["source"]["records"], 2);
  EXPECT_EQ(
      bins["targets"],
      json({{{"name", name}, {"kind", "string-categorical"}, {"categories", {"l 1", "l\n2"}}}}));
  EXPECT_NE(outcome.out.find("gr\"o\\\xC3\xB6\\t\xC3\x9F"), std::string::npos) << outcome.out;
}

struct Refusal {
  const char* name;
  Words arguments;      // the input is in.csv
  std::string content;  // of in.csv; not written when empty
  int exitCode;
  std::string message;  // a part of it
};
void PrintTo(const Refusal& row, std::ostream* os) { *os << row.name; }

class RefusalTest : public testing::TestWithParam<Refusal> {};

TEST_P(RefusalTest, SaysWhyAndLeavesNothing) {
  const Refusal& row = GetParam();
  const Program program;
  if (!row.content.empty()) program.Write("in.csv", row.content);
  const Words before = program.Files();
  const auto outcome = program.Run(row.arguments);
  EXPECT_EQ(outcome.exitCode, row.exitCode) << outcome.err;
  EXPECT_NE(outcome.err.find(row.message), std::string::npos) << outcome.err;
  EXPECT_EQ(outcome.out, "");
  EXPECT_EQ(program.Files(), before);
  EXPECT_LT(outcome.err.size(), 1000u);
}

Words OnTarget(const Words& more = {}) {
  return Words{"supervised", "--target", "y", "--json", "out.json"} + more + Words{"in.csv"};
}
const char kGood[] = "a,y,w\n1,x,1\n2,z,2\n";

INSTANTIATE_TEST_SUITE_P(
    Input, RefusalTest,
    testing::Values(
        Refusal{"MissingFile", OnTarget(), "", 1, "in.csv: cannot open it: No such file"},
        Refusal{"Directory", {"supervised", "--target", "y", "."}, "", 1, "this is a directory"},
        Refusal{"EmptyInput",
                {"supervised", "--target", "y"},
                "",
                1,
                "standard input: the file is empty"},
        Refusal{"HeaderOnly", OnTarget(), "a,y\n", 1, "a header but no record"},
        Refusal{"RaggedRow", OnTarget(), "a,y\n1,x\n2\n", 1,
                "in.csv:3: 1 fields found, 2 expected"},
        Refusal{"UnknownColumn", OnTarget({"--weight", "wieght"}), "a,y,weight\n1,x,1\n", 1,
                "in.csv: there is no column 'wieght'; did you mean 'weight'?"},
        Refusal{"OtherDelimiter", OnTarget(), "a;y\n1;x\n", 1, "is --delimiter ';' missing?"},
        Refusal{"DuplicateColumn", OnTarget(), "a,y,a\n1,x,2\n", 1,
                "in.csv:1: columns 1 and 3 have the same name 'a'"},
        Refusal{"NegativeWeight", OnTarget({"--weight", "w"}), "a,y,w\n1,x,1\n2,z,-2\n", 1,
                "in.csv:3: the weight '-2' in column 'w' is negative"},
        Refusal{"TextWeight", OnTarget({"--weight", "w"}), "a,y,w\n1,x,1\n2,z,q\n", 1,
                "in.csv:3: the weight 'q' in column 'w' is not a number"},
        Refusal{"OneClass", OnTarget(), "a,y\n1,x\n2,x\n", 1, "the target 'y' has a single value"},
        Refusal{"NoAttribute", OnTarget(), "a,y\nq,x\nr,z\n", 1, "no column can be binned"},
        Refusal{"BinaryJunk", OnTarget(), std::string("\x01\x02y\0\xFF,\n", 8), 1, "binary file"},
        Refusal{"LongLine", OnTarget(), std::string(10'000'000, 'a'), 1, "there is no column 'y'"},
        Refusal{"TempDir", OnTarget({"--temp-dir", "/nowhere"}), kGood, 1,
                "cannot write temporary files in '/nowhere': No such file or directory; choose"},
        Refusal{"JsonDirectory",
                {"supervised", "--target", "y", "--json", "/nowhere/out.json", "in.csv"},
                kGood,
                1,
                "/nowhere/out.json: cannot write it"}),
    RowName);

INSTANTIATE_TEST_SUITE_P(
    Usage, RefusalTest,
    testing::Values(
        Refusal{"NoCommand", {}, "", 2, "subcommand"},
        Refusal{"UnknownCommand", {"bin"}, "", 2, "there is no command 'bin'"},
        Refusal{"NoTarget", {"supervised", "in.csv"}, kGood, 2, "--target is required"},
        Refusal{"UnknownOption", OnTarget({"--nonsense"}), kGood, 2, "--nonsense"},
        Refusal{"Choice", OnTarget({"--closed", "both"}), kGood, 2, "--closed: both not in"},
        Refusal{"NoNumber", OnTarget({"--prebins", "many"}), kGood, 2, "--prebins"},
        Refusal{"OutOfRange", OnTarget({"--small-bins", "1.5"}), kGood, 2, "--small-bins"},
        Refusal{"OneBin", {"equal-frequency", "--bins", "1", "in.csv"}, kGood, 2, "--bins"},
        Refusal{"Delimiter", OnTarget({"--delimiter", "ab"}), kGood, 2, "--delimiter"},
        Refusal{"TwoRoles", OnTarget({"--weight", "y"}), kGood, 2,
                "cannot be a target and the weight"},
        Refusal{"JsonOverInput",
                {"supervised", "--target", "y", "--json", "./in.csv", "in.csv"},
                kGood,
                2,
                "this is the input"},
        Refusal{"EmptyInterval", OnTarget({"--missing", "a=2:1"}), kGood, 2,
                "interval '2:1' is empty"}),
    RowName);

TEST(Strict, TurnsAWarningIntoAnExitCode) {
  const Program program;
  program.Write("in.csv", "a,y\n1,x\n1,z\n");
  EXPECT_EQ(program.Run({"supervised", "--target", "y", "in.csv"}).exitCode, 0);
  EXPECT_EQ(program.Run({"supervised", "--target", "y", "--strict", "in.csv"}).exitCode, 3);
  EXPECT_EQ(program.Run({"supervised", "--target", "species", "--strict", kIris}).exitCode, 0);
}

TEST(IdColumn, IsLeftOutUnlessItIsAskedFor) {
  const Program program;
  std::string content = "id,a,y\n";
  for (int i = 0; i < 3000; ++i) {
    content += "u" + std::to_string(i) + "," + std::to_string(i % 10) + (i % 2 ? ",x\n" : ",z\n");
  }
  program.Write("in.csv", content);
  const auto outcome = program.Run({"supervised", "--target", "y", "in.csv"});
  EXPECT_EQ(outcome.exitCode, 0);
  EXPECT_NE(outcome.err.find("'id' (line 2: u0)"), std::string::npos) << outcome.err;
  const auto asked = program.Run({"supervised", "--target", "y", "--categorical", "id", "in.csv"});
  EXPECT_EQ(asked.exitCode, 1);
  EXPECT_NE(asked.err.find("in.csv:258: column 'id'"), std::string::npos) << asked.err;
}

class SignalTest : public testing::TestWithParam<int> {};

TEST_P(SignalTest, EndsTheRunAndLeavesNothing) {
  const Program program;
  const auto outcome =
      program.RunAndSignal({"supervised", "--target", "y", "--json", "out.json"}, GetParam());
  EXPECT_EQ(outcome.exitCode, 130);
  EXPECT_EQ(outcome.err, "mcbin: cancelled\n");
  EXPECT_EQ(program.Files(), Words{});
}

INSTANTIATE_TEST_SUITE_P(Signals, SignalTest, testing::Values(SIGINT, SIGTERM));

TEST(Help, BeginsWithExamplesOnStandardOutput) {
  const Program program;
  const auto outcome = program.Run({"supervised", "--help"});
  EXPECT_EQ(outcome.exitCode, 0);
  EXPECT_LT(outcome.out.find("mcbin supervised --target"), outcome.out.find("Options:"));
  EXPECT_EQ(program.Run({"--version"}).out.substr(0, 6), "mcbin ");
}

// What the guide shows is what the program prints; "..." stands for the rest.
TEST(Guide, ShowsTheRealOutput) {
  std::ifstream guide(MCBINNING_EXAMPLES_DIR "/../docs/command-line.md");
  const Program program;
  program.Link("examples", MCBINNING_EXAMPLES_DIR);
  int commandsRun = 0;
  for (std::string line; std::getline(guide, line);) {
    const std::string prompt = "$ mcbin ";
    if (line.rfind(prompt, 0) != 0 || line.find('|') != std::string::npos) continue;
    std::istringstream command(line.substr(prompt.size()));
    Words arguments;
    for (std::string word; command >> word;) arguments.push_back(word);
    std::string shown;
    while (std::getline(guide, line) && line != "```" && line != "...") shown += line + "\n";
    const std::string printed = program.Run(arguments).out;
    EXPECT_EQ(line == "..." ? printed.substr(0, shown.size()) : printed, shown);
    ++commandsRun;
  }
  EXPECT_EQ(commandsRun, 7);
}

}  // namespace
