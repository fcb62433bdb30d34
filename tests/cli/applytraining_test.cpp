#include <fmt/format.h>
#include <gtest/gtest.h>

#include <nlohmann/json.hpp>
#include <ostream>
#include <sstream>
#include <string>
#include <vector>

#include "cli/program.h"
#include "support/rowname.h"

namespace {

using nlohmann::json;

// Makes bins of the data and counts them again on the same data: nothing may differ.
void ExpectSameCounts(const std::string& run, const std::string& data, const Program& program) {
  const auto made = program.Run(run + " --quiet --json bins.json " + data);
  ASSERT_EQ(made.exitCode, 0) << made.err;
  const json targets = json::parse(program.Read("bins.json")).value("targets", json::array());
  std::vector<std::string> choices;
  for (const json& target : targets) choices.push_back(" --target " + std::string(target["name"]));
  if (choices.empty()) choices.emplace_back();
  for (const std::string& choice : choices) {
    const auto evaluated = program.Run("evaluate bins.json " + data + choice);
    EXPECT_EQ(evaluated.exitCode, 0) << evaluated.err;
    EXPECT_NE(evaluated.out.find("  equal\n"), std::string::npos) << evaluated.out;
    EXPECT_EQ(evaluated.out.find("  differ\n"), std::string::npos) << evaluated.out;
  }
}

struct DataSet {
  const char* name;
  std::string path;
  std::string target;
  std::string options;
};
void PrintTo(const DataSet& row, std::ostream* os) { *os << row.name; }

class ApplyTrainingTest : public testing::TestWithParam<DataSet> {};

TEST_P(ApplyTrainingTest, ReproducesEveryWeight) {
  const DataSet& data = GetParam();
  const Program program;
  const std::string supervised = "supervised --target " + data.target + data.options;
  const std::string equalFrequency = "equal-frequency" + data.options;
  for (const std::string closed : {" --closed right", " --closed left"}) {
    ExpectSameCounts(supervised + closed, data.path, program);
    ExpectSameCounts(supervised + closed + " --prebin-above 9 --prebins 8", data.path, program);
    for (const char* bins : {" --bins 2", " --bins 7", " --bins 40"}) {
      ExpectSameCounts(equalFrequency + closed + bins, data.path, program);
    }
    const std::string byClass = equalFrequency + closed + " --bins 50 --target " + data.target;
    ExpectSameCounts(byClass, data.path, program);
    ExpectSameCounts(byClass + " --max-bins 5", data.path, program);
  }
}

const DataSet kDataSets[] = {
    {"Iris", "examples/iris.csv", "species", ""},
    {"Wdbc", "examples/wdbc.csv", "diagnosis", ""},
    {"Wine", "examples/wine.csv", "cultivar", ""},
    {"BreastCancer", "data/breast_cancer_wisconsin_original.csv", "class", ""},
    {"Flchain", "data/flchain.csv", "death", ""},
    {"FlchainWeighted", "data/flchain_weighted.csv", "death", " --weight weight"},
    {"Pima", "data/pima_tr2.csv", "diabetes", ""},
    {"Titanic", "data/titanic_freq.csv", "survived", " --weight freq --categorical class,sex,age"},
};

INSTANTIATE_TEST_SUITE_P(DataSets, ApplyTrainingTest, testing::ValuesIn(kDataSets), RowName);

// A file larger than any buffer, the bin in the last field of each line.
TEST(ApplyTraining, GivesEveryRecordItsBin) {
  const Program program;
  const std::string file = "data/flchain.csv";
  const auto made =
      program.Run("equal-frequency --attributes age --bins 7 --json bins.json " + file);
  ASSERT_EQ(made.exitCode, 0) << made.err;
  std::istringstream lines(program.Run("apply bins.json " + file).out);
  std::vector<double> binWeights(7);
  std::string line;
  std::getline(lines, line);
  while (std::getline(lines, line)) {
    binWeights.at(std::stoul(line.substr(line.rfind(',') + 1))) += 1.0;
  }
  const json bins = json::parse(program.Read("bins.json"));
  EXPECT_EQ(bins["results"][0]["bin_weights"], binWeights);
}

// The one difference between a run's counts and its cut points: a midpoint of neighbouring doubles
// that rounds onto the one beyond the cut.
TEST(ApplyTraining, NamesAMidpointThatRoundedOntoANeighbour) {
  struct Midpoint {
    const char* closed;
    const char* low;
    const char* high;
    const char* told;
  };
  const char* const one = "1";
  const char* const next = "1.0000000000000002";
  const char* const third = "1.0000000000000004";
  for (const auto& [closed, low, high, told] :
       {Midpoint{"right", next, third,
                 "cut point 1.0000000000000004 is a midpoint that rounded onto the value above it: "
                 "the bin file counts the weight 2 of that value above the cut point"},
        {"left", one, next,
         "cut point 1 is a midpoint that rounded onto the value below it: the bin file counts the "
         "weight 2 of that value below the cut point"},
        {"right", one, next, "  equal\n"},
        {"left", next, third, "  equal\n"}}) {
    const Program program;
    program.Write("d.csv", fmt::format("a\n0\n{0}\n{0}\n{1}\n{1}\n9\n", low, high));
    program.Run(std::string("equal-frequency --bins 2 --json bins.json d.csv --closed ") + closed);
    const std::string out = program.Run("evaluate bins.json d.csv").out;
    EXPECT_NE(out.find(told), std::string::npos) << out;
  }
}

}  // namespace
