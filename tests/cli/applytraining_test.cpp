#include <fmt/format.h>
#include <gtest/gtest.h>

#include <cstdlib>
#include <nlohmann/json.hpp>
#include <ostream>
#include <random>
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

// Ties, decimals, huge and tiny numbers, both zeros, missing values of every kind.
std::string RandomData(std::mt19937& random) {
  const auto below = [&](unsigned bound) { return static_cast<unsigned>(random() % bound); };
  const std::vector<double> scales = {1.0, 1e-7, 1e-300, 1e12, 1e300};
  const double scale = scales[below(5)];
  const unsigned distinct = 1 + below(60);
  std::ostringstream text;
  text.precision(17);
  text << "a,b,w,y,z\n";
  for (unsigned i = 0, count = 2 + below(300); i < count; ++i) {
    const double value = (static_cast<double>(below(distinct)) - 5.0) / 3.0 * scale;
    const char* const gaps[] = {"", "NA", "nan", "-1", "5e+200", " "};
    if (below(8) == 0) {
      text << gaps[below(6)];
    } else {
      text << value;
    }
    text << ',' << (below(9) == 0 ? "-0.0" : std::to_string(below(4))) << ','
         << (below(10) == 0 ? "" : std::to_string(below(40)) + ".5") << ','
         << (i < 2 ? i : below(3)) << ','
         << (i % 2 == 0      ? "even"
             : below(6) == 0 ? ""
                             : "odd")
         << '\n';
  }
  return text.str() + "0,0,1,0,even\n1,0,1,1,odd\n";
}

TEST(ApplyTraining, ReproducesEveryWeightOfRandomData) {
  const char* const given = std::getenv("MCBINNING_TEST_SEED");
  const unsigned seed = given != nullptr ? static_cast<unsigned>(std::stoul(given)) : 20240611u;
  std::mt19937 random(seed);
  const Program program;
  for (int round = 0; round < 25 && !HasFailure(); ++round) {
    SCOPED_TRACE("seed " + std::to_string(seed) + ", round " + std::to_string(round));
    program.Write("d.csv", RandomData(random));
    std::string options = random() % 2 == 0 ? " --closed left" : " --closed right";
    options += " --attributes a,b --missing a=-1,1e200: --missing w=7.5";
    if (random() % 2 == 0) options += " --weight w --rounding truncate";
    ExpectSameCounts("supervised --target y --target z" + options, "d.csv", program);
    const std::string bins = std::to_string(2 + random() % 12);
    ExpectSameCounts("equal-frequency --bins " + bins + options, "d.csv", program);
  }
}

struct Midpoint {
  const char* name;
  const char* closed;
  const char* low;  // neighbouring doubles, one of which the midpoint rounds onto
  const char* high;
  const char* told;
};
void PrintTo(const Midpoint& row, std::ostream* os) { *os << row.name; }

class MidpointTest : public testing::TestWithParam<Midpoint> {};

// The one difference between a run's counts and its cut points.
TEST_P(MidpointTest, IsNamedWhenItRoundsOntoANeighbour) {
  const auto& [name, closed, low, high, told] = GetParam();
  const Program program;
  program.Write("d.csv", fmt::format("a\n0\n{0}\n{0}\n{1}\n{1}\n9\n", low, high));
  const std::string command = "equal-frequency --bins 2 --json bins.json d.csv --closed ";
  ASSERT_EQ(program.Run(command + closed).exitCode, 0);
  const std::string out = program.Run("evaluate bins.json d.csv").out;
  EXPECT_NE(out.find(told), std::string::npos) << out;
}

const Midpoint kMidpoints[] = {
    {"RightOntoUpper", "right", "1.0000000000000002", "1.0000000000000004",
     "cut point 1.0000000000000004 is a midpoint that rounded onto the value above it: the bin "
     "file counts the weight 2 of that value above the cut point"},
    {"LeftOntoLower", "left", "1", "1.0000000000000002",
     "cut point 1 is a midpoint that rounded onto the value below it: the bin file counts the "
     "weight 2 of that value below the cut point"},
    {"RightOntoLowerIsRight", "right", "1", "1.0000000000000002", "  equal\n"},
    {"LeftOntoUpperIsRight", "left", "1.0000000000000002", "1.0000000000000004", "  equal\n"},
};

INSTANTIATE_TEST_SUITE_P(Closed, MidpointTest, testing::ValuesIn(kMidpoints), RowName);

}  // namespace
