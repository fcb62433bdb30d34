#include "cli/program.h"

#include <gtest/gtest.h>
#include <signal.h>
#include <sys/resource.h>

#include <fstream>
#include <map>
#include <nlohmann/json.hpp>
#include <ostream>
#include <stdexcept>
#include <string>
#include <vector>

#include "cli/handmadebins.h"
#include "support/rowname.h"

namespace {

using nlohmann::json;

// The bin file of a run that must succeed.
json BinsOf(const std::string& command, const std::string& input = "") {
  const Program program;
  const Program::Outcome outcome = program.Run(command + " --json -", input);
  EXPECT_EQ(outcome.exitCode, 0) << outcome.err;
  EXPECT_TRUE(program.Files().empty());
  return json::parse(outcome.out);
}

const json& ResultOf(const json& bins, const std::string& attribute, const std::string& target) {
  for (const json& result : bins["results"]) {
    if (result["attribute"] == attribute && result.value("target", "") == target) return result;
  }
  throw std::runtime_error("no result for " + attribute);
}

TEST(Supervised, FindsTheBinsOfIris) {
  const json bins = BinsOf("supervised --target species examples/iris.csv");
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

// Which the program once took 90 kB a column for, and a time that grew with their square.
TEST(WideTable, TakesLittleMemoryForEachColumn) {
#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__)
  GTEST_SKIP() << "the sanitizers take memory themselves";
#endif
  constexpr int kColumns = 20000;
  std::string table = "c0";
  for (int i = 1; i < kColumns; ++i) table += ",c" + std::to_string(i);
  for (const char* value : {"1", "2", "3"}) {
    table += '\n';
    for (int i = 0; i < kColumns; ++i) table += std::string(i > 0 ? 1 : 0, ',') + value;
  }
  EXPECT_EQ(Program().Run("equal-frequency --bins 2 -", table).exitCode, 0);
  rusage used{};
  getrusage(RUSAGE_CHILDREN, &used);
  EXPECT_LT(used.ru_maxrss, kColumns / 1024.0 * 7500) << "the largest program of all, in KiB";

  rlimit before{};
  getrlimit(RLIMIT_AS, &before);
  const rlimit small{rlim_t{1} << 29, before.rlim_max};
  setrlimit(RLIMIT_AS, &small);
  const auto refused = Program().Run("equal-frequency --bins 2 -", table);
  setrlimit(RLIMIT_AS, &before);
  EXPECT_EQ(refused.exitCode, 1);
  EXPECT_NE(refused.err.find("memory for 20000 variables of 3 records"), std::string::npos)
      << refused.err;
}

TEST(Supervised, LeftClosedIntervalsAreWrittenSo) {
  const Program program;
  const auto outcome = program.Run("supervised --target species --closed left examples/iris.csv");
  EXPECT_NE(outcome.out.find("(-inf, 1)"), std::string::npos) << outcome.out;
  EXPECT_NE(outcome.out.find("[1, 1.8)"), std::string::npos) << outcome.out;
}

TEST(Supervised, WeightsStandForRepeatedCases) {
  const std::string command = "supervised --target death --attributes age,creatinine ";
  const json plain = BinsOf(command + "data/flchain.csv");
  const json weighted = BinsOf(command + "--weight weight data/flchain_weighted.csv");
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
  const std::string command =
      "supervised --attributes age,kappa,creatinine data/flchain.csv --target ";
  const json both = BinsOf(command + "death,mgus --target sex");
  ASSERT_EQ(both["results"].size(), 9u);
  for (const std::string target : {"death", "mgus", "sex"}) {
    const json alone = BinsOf(command + target);
    for (const json& result : alone["results"]) {
      EXPECT_EQ(ResultOf(both, result["attribute"], target), result) << target;
    }
  }
}

TEST(Supervised, MergesSmallBinsAndPreBinsWhenAsked) {
  const std::string command = "supervised --target death --attributes age data/flchain.csv";
  const json all = BinsOf(command)["results"][0];
  for (const char* option : {" --small-bins 0.9", " --prebin-above 20 --prebins 4"}) {
    const json fewer = BinsOf(command + option)["results"][0];
    EXPECT_LT(fewer["cut_points"].size(), all["cut_points"].size()) << option;
    EXPECT_EQ(fewer["valid_weight"], all["valid_weight"]) << option;
  }
}

TEST(Supervised, RoundsWeightsAndCountsDroppedRecords) {
  const Program program;
  program.Write("w.csv", "a,y,w\n1,x,1.5\n2,z,2\n3,x,0\n4,x,\n5,x,0.4\n6,x,99\n");
  const std::string command = "supervised --target y --weight w --missing w=99 w.csv --json - ";
  const auto outcome = program.Run(command);
  EXPECT_EQ(json::parse(outcome.out)["results"][0]["valid_weight"], 4);
  EXPECT_NE(outcome.err.find("6 records read, 4 dropped for their weight (2 missing, 1 zero, 1 "
                             "rounded to zero)"),
            std::string::npos)
      << outcome.err;
  const json truncated = json::parse(program.Run(command + "--rounding truncate").out);
  EXPECT_EQ(truncated["results"][0]["valid_weight"], 3);
}

TEST(Supervised, UserMissingValuesAreLeftOutOfTheBins) {
  std::string content = "a,y\n";
  for (int i = 0; i < 50; ++i) content += std::to_string(i) + (i < 25 ? ",x\n" : ",z\n");
  content += "99,x\n1000,x\n-5,z\n";
  const json bins = BinsOf("supervised --target y --missing a=99,1000: --missing y=q", content);
  const json& result = ResultOf(bins, "a", "y");
  EXPECT_EQ(result["cut_points"], json({24.0}));
  EXPECT_EQ(result["valid_weight"], 51.0);
  EXPECT_EQ(result["weight_with_missing"], 53.0);
  EXPECT_EQ(bins["attributes"][0]["user_missing"],
            json({{"values", {99}}, {"interval", {{"low", 1000}}}}));
  EXPECT_EQ(bins["targets"][0]["user_missing"], json({{"values", {"q"}}}));
}

TEST(Supervised, AResultWithoutCasesHasNoNumbersThatDoNotExist) {
  const json bins = BinsOf("supervised --target y", "a,b,y\n1,,x\n2,,z\n");
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
  const json bins = BinsOf("equal-frequency --bins 5", content);
  ASSERT_EQ(bins["results"].size(), 1u);
  EXPECT_EQ(bins["results"][0]["bin_weights"], json({20.0, 20.0, 20.0, 20.0, 20.0}));
  EXPECT_FALSE(bins["results"][0].contains("class_weights"));
  EXPECT_FALSE(bins.contains("targets"));
}

TEST(BinFile, SaysWhatMadeIt) {
  const Program program;
  program.Write("bins.json", "an older file");
  const std::string name = "gr\"o\\\xC3\xB6\t\xC3\x9F";
  const std::string quoted = "\"gr\"\"o\\\xC3\xB6\t\xC3\x9F\"";
  program.Write("d.csv", "a;" + quoted + "\n1;\"l 1\"\n2;\"l\n2\"\n");
  const auto outcome = program.Run("supervised --delimiter ; --closed left --small-bins 0.25 " +
                                   ("--json bins.json d.csv --target " + quoted));
  ASSERT_EQ(outcome.exitCode, 0) << outcome.err;
  EXPECT_EQ(program.Files(), (std::vector<std::string>{"bins.json", "d.csv"}));
  const json bins = json::parse(program.Read("bins.json"));
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

TEST(Strict, TurnsAWarningIntoAnExitCode) {
  const Program program;
  program.Write("in.csv", "a,y\n1,x\n1,z\n");
  const auto tolerant = program.Run("supervised --target y in.csv");
  EXPECT_EQ(tolerant.exitCode, 0);
  EXPECT_NE(tolerant.out.find("; the only value is 1;"), std::string::npos) << tolerant.out;
  EXPECT_EQ(program.Run("supervised --target y in.csv --strict").exitCode, 3);
  EXPECT_EQ(program.Run("supervised --target species examples/iris.csv --strict").exitCode, 0);
}

TEST(IdColumn, IsLeftOutUnlessItIsAskedFor) {
  std::string content = "id,a,y\n";
  for (int i = 0; i < 3000; ++i) {
    content += "u" + std::to_string(i) + "," + std::to_string(i % 10) + (i % 2 ? ",x\n" : ",z\n");
  }
  const Program program;
  const auto outcome = program.Run("supervised --target y", content);
  EXPECT_EQ(outcome.exitCode, 0);
  EXPECT_NE(outcome.err.find("'id' (line 2: u0)"), std::string::npos) << outcome.err;
  const auto asked = program.Run("supervised --target y --categorical id", content);
  EXPECT_EQ(asked.exitCode, 1);
  EXPECT_NE(asked.err.find(":258: column 'id'"), std::string::npos) << asked.err;
}

TEST(StalledReader, TheFirstSignalEndsTheCommand) {
  std::string numbers = "a,c\n";
  for (int i = 0; i < 30'000; ++i) numbers += std::to_string(i) + ",x\n";
  for (const char* command : {"apply bins.json", "equal-frequency --bins 9000 --json pipe"}) {
    const Program program;
    program.Write("bins.json", kHandMadeBins);
    program.Write("in.csv", numbers);
    const auto outcome = program.RunStalled(command, "in.csv", SIGTERM);
    EXPECT_EQ(outcome.exitCode, 130) << command << outcome.err;
    EXPECT_EQ(program.Files(), (std::vector<std::string>{"bins.json", "in.csv", "pipe"}));
  }
}

// What a run makes of its surroundings; in.csv is its standard input.
struct Surroundings {
  const char* name;
  std::string command;
  Program::Setting setting;
  int exitCode;
  const char* message;  // a part of it
};
void PrintTo(const Surroundings& row, std::ostream* os) { *os << row.name; }

class SurroundingsTest : public testing::TestWithParam<Surroundings> {};

TEST_P(SurroundingsTest, AreDealtWithAndCostNoFile) {
  const Surroundings& row = GetParam();
  const Program program;
  program.Write("in.csv", "a,t\n1,x\n2,y\n");
  program.Write("old.json", "old");
  const auto outcome = program.Run(row.command, row.setting);
  EXPECT_EQ(outcome.exitCode, row.exitCode);
  EXPECT_NE(outcome.err.find(row.message), std::string::npos) << outcome.err;
  EXPECT_EQ(outcome.out.empty(), row.exitCode != 0) << outcome.out;
  EXPECT_EQ(program.Files(), (std::vector<std::string>{"in.csv", "old.json"}));
  EXPECT_EQ(program.Read("in.csv"), "a,t\n1,x\n2,y\n");
  EXPECT_EQ(program.Read("old.json"), "old");
}

const Surroundings kSurroundings[] = {
    {"JsonOverStandardInput",
     "equal-frequency --json in.csv",
     {"in.csv"},
     2,
     "--json 'in.csv': this is the input, which would be overwritten"},
    {"ReportOverStandardInput", "equal-frequency --report in.csv", {"in.csv"}, 2, "is the input"},
    {"ExportOverStandardInput",
     "export --format python -o in.csv -",
     {"in.csv"},
     2,
     "--output 'in.csv': this is the bin file"},
    {"ReportOfBinsOverStandardInput", "report -o in.csv -", {"in.csv"}, 2, "is the bin file"},
    {"OutputAfterInput", "apply old.json", {"in.csv", "in.csv"}, 2, "standard output: this is"},
};

INSTANTIATE_TEST_SUITE_P(Runs, SurroundingsTest, testing::ValuesIn(kSurroundings), RowName);

// What the guide shows is what the program prints; "..." stands for the rest.
TEST(Guide, ShowsTheRealOutput) {
  std::ifstream guide(MCBINNING_EXAMPLES_DIR "/../docs/command-line.md");
  const Program program;
  int commandsRun = 0;
  for (std::string line; std::getline(guide, line);) {
    const std::string prompt = "$ mcbin ";
    if (line.rfind(prompt, 0) != 0 || line.find('|') != std::string::npos) continue;
    const std::string command = line.substr(prompt.size());
    std::string shown;
    while (std::getline(guide, line) && line != "```" && line != "...") shown += line + "\n";
    const std::string printed = program.Run(command).out;
    EXPECT_EQ(line == "..." ? printed.substr(0, shown.size()) : printed, shown);
    ++commandsRun;
  }
  EXPECT_EQ(commandsRun, 7);
}

}  // namespace
