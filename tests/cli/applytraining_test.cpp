#include <gtest/gtest.h>

#include <cmath>
#include <cstdlib>
#include <map>
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
using Words = std::vector<std::string>;

const std::string kExamples = MCBINNING_EXAMPLES_DIR "/";
const std::string kTestData = MCBINNING_TEST_DATA_DIR "/";

Words operator+(Words words, const Words& more) {
  words.insert(words.end(), more.begin(), more.end());
  return words;
}

// A CSV text without quotes, as the data sets here are, by columns.
std::map<std::string, Words> ColumnsOf(const std::string& text) {
  std::istringstream lines(text);
  Words names;
  std::map<std::string, Words> columns;
  for (std::string line; std::getline(lines, line);) {
    Words fields(1);
    for (const char c : line) {
      if (c == ',') {
        fields.emplace_back();
      } else if (c != '\r') {
        fields.back() += c;
      }
    }
    if (names.empty()) {
      names = fields;
      continue;
    }
    for (std::size_t i = 0; i < fields.size(); ++i) columns[names[i]].push_back(fields[i]);
  }
  return columns;
}

// The weights of bins and classes among the records that `mcbin apply` gave a bin.
struct Counts {
  std::vector<double> bins;
  std::vector<std::vector<double>> classes;
};

std::string CategoryText(const json& category) {
  return category.is_string() ? category.get<std::string>() : category.dump();
}

// The weight of a record; 0 for one that takes no part.
double CaseWeight(const json& settings, std::map<std::string, Words>& columns, std::size_t record) {
  if (!settings.contains("weight")) return 1.0;
  const std::string& text = columns[settings["weight"].get<std::string>()][record];
  const double weight = text.empty() ? 0.0 : std::stod(text);
  const json missing = settings.value("weight_user_missing", json::object());
  for (const json& value : missing.value("values", json::array())) {
    if (value == weight) return 0.0;
  }
  return std::floor(settings["rounding"] == "truncate" ? weight : weight + 0.5);
}

Counts CountOf(const json& result, const json& file, std::map<std::string, Words>& binned) {
  Counts counts;
  const bool supervised = result.contains("target");
  std::map<std::string, std::size_t> codes;
  for (const json& target : file.value("targets", json::array())) {
    if (target["name"] != result["target"]) continue;
    for (const json& category : target["categories"]) {
      codes.emplace(CategoryText(category), codes.size());
    }
  }
  const Words& bins = binned[result["attribute"].get<std::string>() + "_bin"];
  counts.bins.assign(result["cut_points"].size() + 1, 0.0);
  if (supervised) counts.classes.assign(counts.bins.size(), std::vector<double>(codes.size()));
  for (std::size_t i = 0; i < bins.size(); ++i) {
    if (bins[i].empty()) continue;
    const double caseWeight = CaseWeight(file["settings"], binned, i);
    const std::size_t bin = std::stoul(bins[i]);
    if (supervised) {
      const auto code = codes.find(binned[result["target"].get<std::string>()][i]);
      if (code == codes.end()) continue;
      counts.classes[bin][code->second] += caseWeight;
    }
    counts.bins[bin] += caseWeight;
  }
  return counts;
}

// Applies the bins for one target, or those without, and compares what both count.
void ExpectSameCounts(const json& file, const std::string& target, const std::string& path,
                      const Program& program) {
  const Words options = target.empty() ? Words{} : Words{"--target", target};
  const auto applied = program.Run(Words{"apply", "bins.json", path} + options);
  ASSERT_EQ(applied.exitCode, 0) << applied.err;
  std::map<std::string, Words> binned = ColumnsOf(applied.out);
  for (const json& result : file["results"]) {
    if (result.value("target", "") != target || result["bin_weights"].empty()) continue;
    const Counts counts = CountOf(result, file, binned);
    EXPECT_EQ(counts.bins, result["bin_weights"]) << result;
    EXPECT_EQ(counts.classes, result.value("class_weights", json::array())) << result;
  }
  const auto evaluated = program.Run(Words{"evaluate", "bins.json", path} + options);
  EXPECT_EQ(evaluated.exitCode, 0) << evaluated.err;
  EXPECT_EQ(evaluated.out.find("  differ"), std::string::npos) << evaluated.out;
}

void ExpectSameCounts(const Words& run, const std::string& path, const Program& program) {
  const auto made = program.Run(run + Words{"--quiet", "--json", "bins.json", path});
  ASSERT_EQ(made.exitCode, 0) << made.err;
  const json file = json::parse(program.Read("bins.json"));
  ASSERT_FALSE(file["results"].empty());
  if (!file.contains("targets")) ExpectSameCounts(file, "", path, program);
  for (const json& target : file.value("targets", json::array())) {
    ExpectSameCounts(file, target["name"], path, program);
  }
}

struct DataSet {
  const char* name;
  std::string path;
  std::string target;
  Words options;
};
void PrintTo(const DataSet& row, std::ostream* os) { *os << row.name; }

class ApplyTrainingTest : public testing::TestWithParam<DataSet> {};

TEST_P(ApplyTrainingTest, ReproducesEveryWeight) {
  const DataSet& data = GetParam();
  const Program program;
  for (const char* closed : {"right", "left"}) {
    const Words options = data.options + Words{"--closed", closed};
    ExpectSameCounts(Words{"supervised", "--target", data.target} + options, data.path, program);
    ExpectSameCounts(
        Words{"supervised", "--target", data.target, "--prebin-above", "9", "--prebins", "8"} +
            options,
        data.path, program);
    for (const char* bins : {"2", "7", "40"}) {
      ExpectSameCounts(Words{"equal-frequency", "--bins", bins} + options, data.path, program);
    }
  }
}

INSTANTIATE_TEST_SUITE_P(
    DataSets, ApplyTrainingTest,
    testing::Values(
        DataSet{"Iris", kExamples + "iris.csv", "species", {}},
        DataSet{"Wdbc", kExamples + "wdbc.csv", "diagnosis", {}},
        DataSet{"Wine", kExamples + "wine.csv", "cultivar", {}},
        DataSet{"BreastCancer", kTestData + "breast_cancer_wisconsin_original.csv", "class", {}},
        DataSet{"Flchain", kTestData + "flchain.csv", "death", {}},
        DataSet{
            "FlchainWeighted", kTestData + "flchain_weighted.csv", "death", {"--weight", "weight"}},
        DataSet{"Pima", kTestData + "pima_tr2.csv", "diabetes", {}},
        DataSet{"Titanic",
                kTestData + "titanic_freq.csv",
                "survived",
                {"--weight", "freq", "--categorical", "class,sex,age"}}),
    RowName);

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
    Words options = {"--closed",     random() % 2 == 0 ? "left" : "right",
                     "--attributes", "a,b",
                     "--missing",    "a=-1,1e200:",
                     "--missing",    "w=7.5"};
    if (random() % 2 == 0) options = options + Words{"--weight", "w", "--rounding", "truncate"};
    ExpectSameCounts(Words{"supervised", "--target", "y", "--target", "z"} + options, "d.csv",
                     program);
    ExpectSameCounts(
        Words{"equal-frequency", "--bins", std::to_string(2 + random() % 12)} + options, "d.csv",
        program);
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
  const Midpoint& row = GetParam();
  const Program program;
  const std::string low = std::string(row.low) + "\n";
  const std::string high = std::string(row.high) + "\n";
  program.Write("d.csv", "a\n0\n" + low + low + high + high + "9\n");
  ASSERT_EQ(program
                .Run({"equal-frequency", "--bins", "2", "--closed", row.closed, "--json",
                      "bins.json", "d.csv"})
                .exitCode,
            0);
  const std::string out = program.Run({"evaluate", "bins.json", "d.csv"}).out;
  EXPECT_NE(out.find(row.told), std::string::npos) << out;
}

INSTANTIATE_TEST_SUITE_P(
    Closed, MidpointTest,
    testing::Values(
        Midpoint{"RightOntoUpper", "right", "1.0000000000000002", "1.0000000000000004",
                 "cut point 1.0000000000000004 is a midpoint that rounded onto the value above "
                 "it: the bin file counts the weight 2 of that value above the cut point"},
        Midpoint{"LeftOntoLower", "left", "1", "1.0000000000000002",
                 "cut point 1 is a midpoint that rounded onto the value below it: the bin file "
                 "counts the weight 2 of that value below the cut point"},
        Midpoint{"RightOntoLowerIsRight", "right", "1", "1.0000000000000002", "  equal\n"},
        Midpoint{"LeftOntoUpperIsRight", "left", "1.0000000000000002", "1.0000000000000004",
                 "  equal\n"}),
    RowName);

}  // namespace
