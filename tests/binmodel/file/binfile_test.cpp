#include "binmodel/file/binfile.h"

#include <gtest/gtest.h>

#include <cfloat>
#include <cmath>
#include <cstdio>
#include <fstream>
#include <nlohmann/json.hpp>
#include <string>
#include <vector>

#include "binmodel/model/refusal.h"

namespace {

using MCBinModel::BinModel;
using MCBinModel::RefusalCode;
using nlohmann::json;

const char kName[] = "bins.json";

// Two attributes against one target, every kind of variable and every member.
json Example() {
  return json::parse(R"({
    "format": "mcbin-bins", "version": 2, "tool": "mcbin 0", "algorithm": "supervised",
    "closed": "left", "later": [[1]],
    "settings": {"prebin_above": 1000, "prebins": 50, "small_bins": 0.25, "woe_adjust": 0.5,
                 "weight": "w", "rounding": "truncate",
                 "weight_user_missing": {"values": [99], "interval": {"low": 1000}}},
    "source": {"name": "d.csv", "delimiter": ";", "decimal": ",", "na": ["?", "\"\""], "records": 9,
               "dropped": {"missing_weight": 1, "zero_weight": 0, "weight_rounded_to_zero": 1}},
    "attributes": [
      {"name": "a", "kind": "continuous", "user_missing": {"values": [0.1, -1]}},
      {"name": "c", "kind": "numeric-categorical", "categories": [3, 0.5]}],
    "targets": [{"name": "y", "kind": "string-categorical", "categories": ["n", "ö"],
                 "event": "n", "user_missing": {"values": ["q"]}}],
    "results": [
      {"attribute": "a", "target": "y", "status": {"code": 0, "severity": "ok", "text": "ok"},
       "cut_points": [0.1, 2.5], "counted_cut_points": "moved", "bin_weights": [3, 0, 4], "class_weights": [[3, 0], [0, 0], [1, 3]],
       "missing": {"weight": 1, "class_weights": [0, 1]},
       "valid_weight": 7, "weight_with_missing": 8, "distinct_values": 5, "minimum": -1.5,
       "maximum": 3, "model_entropy": 0.46, "information_gain": 0.5},
      {"attribute": "c", "target": "y",
       "status": {"code": 120015, "severity": "warning", "text": "no valid case"},
       "cut_points": [], "counted_cut_points": "af63bd4c8601b7df",
       "bin_weights": [], "class_weights": [], "valid_weight": 0,
       "weight_with_missing": 8, "distinct_values": 0,
       "best_split": {"cut_point": 3, "gain": 0.25, "threshold": 0.3, "meaning": "close"}}],
    "refinements": ["at most 3 bins"]})");
}

std::string RefusalOf(const std::string& text) {
  try {
    MCBinModel::ParseBinFile(text, kName);
  } catch (const MCBinModel::Refusal& error) {
    return error.what();
  }
  return "accepted";
}

std::string PlaceOfRefusal(const BinModel& model) {
  try {
    return "written: " + WriteBinFile(model);
  } catch (const MCBinModel::Refusal& error) {
    return error.GetPlace();
  }
}

RefusalCode CodeOfReading(const std::string& path) {
  try {
    MCBinModel::ReadBinFile(path);
  } catch (const MCBinModel::Refusal& error) {
    return error.GetCode();
  }
  return RefusalCode::kInput;
}

TEST(BinFile, GivesBackWhatWasWritten) {
  const std::string once = WriteBinFile(MCBinModel::ParseBinFile(Example().dump(), kName));
  EXPECT_EQ(WriteBinFile(MCBinModel::ParseBinFile(once, kName)), once);
  json expected = Example();
  expected.erase("later");
  expected.erase("tool");
  json actual = json::parse(once);
  actual.erase("tool");
  EXPECT_EQ(actual["attributes"][0]["user_missing"].dump(), "{\"values\":[0.1,-1]}");
  EXPECT_EQ(actual, expected);
}

TEST(BinFile, CutPointsAreBitEqual) {
  BinModel model = MCBinModel::ParseBinFile(Example().dump(), kName);
  std::vector<double> cuts = {-DBL_MAX, -1e22, -1.0 / 3, -DBL_TRUE_MIN, -0.0, DBL_MIN};
  for (double value = 0.1; value < 1e300; value = std::nextafter(value * 1e9, DBL_MAX)) {
    cuts.push_back(value);
  }
  cuts.insert(cuts.end(), {1e301, DBL_MAX});
  model.results[0].cutPoints = cuts;
  model.results[0].binWeights.assign(cuts.size() + 1, 0.0);
  model.results[0].classWeights.assign(cuts.size() + 1, {0.0, 0.0});
  model.results[0].validWeight = 0.0;
  const BinModel back = MCBinModel::ParseBinFile(WriteBinFile(model), kName);
  EXPECT_EQ(back.results[0].cutPoints, cuts);
  EXPECT_TRUE(std::signbit(back.results[0].cutPoints[4]));
}

TEST(BinFile, RefusesToWriteWhatItCouldNotRead) {
  BinModel infinite = MCBinModel::ParseBinFile(Example().dump(), kName);
  infinite.results[0].cutPoints[1] = HUGE_VAL;
  EXPECT_EQ(PlaceOfRefusal(infinite), "/results/0/cut_points");
  BinModel latin = MCBinModel::ParseBinFile(Example().dump(), kName);
  latin.targets[0].texts[1] = "\xF6";
  EXPECT_EQ(PlaceOfRefusal(latin), "/targets/0/categories");
}

TEST(BinFile, IsReadFromThePathGiven) {
  const std::string path = testing::TempDir() + "mcbinning_bin_file_test.json";
  std::ofstream(path) << Example().dump();
  EXPECT_EQ(MCBinModel::ReadBinFile(path).results.size(), 2u);
  std::ofstream(path) << "{";
  EXPECT_EQ(CodeOfReading(path), RefusalCode::kBadBinFile);
  std::remove(path.c_str());
  EXPECT_EQ(CodeOfReading(path), RefusalCode::kUnreadable);
  EXPECT_EQ(CodeOfReading(testing::TempDir()), RefusalCode::kUnreadable);
}

struct Edit {
  const char* name;
  const char* pointer;  // what is replaced
  json value;           // by this; removed when discarded
  const char* message;  // what the answer tells
};

const json kRemoved(json::value_t::discarded);

const Edit kEdits[] = {
    {"MovedCut", "/results/0/cut_points/1", 2.25, "accepted"},
    {"RemovedResult", "/results/1", kRemoved, "accepted"},
    {"UnknownMember", "/attributes/0/comment", "x", "accepted"},
    {"DecimalMark", "/source/decimal", ";", "/decimal: "},
    {"ThousandsMark", "/source/thousands", "'", "accepted"},
    {"MarkOfBoth", "/source/thousands", ",", "/thousands: this is the decimal mark, too"},
    {"OtherFormat", "/format", "x", "bins.json: /: this is no bin file"},
    {"EarlierVersion", "/version", 1, "accepted"},
    {"LaterVersion", "/version", 4, "/version: version 4 of the format is unknown"},
    {"NotCounted", "/results/0/missing", kRemoved, "accepted"},
    {"MissingAboveAll", "/results/0/missing/weight", 2, "/missing/weight: more than"},
    {"MissingSum", "/results/0/missing/class_weights/0", 1,
     "/class_weights: the weights sum up to"},
    {"MissingClassCount",
     "/results/0/missing/class_weights",
     {1},
     "/class_weights: 1 weights, but"},
    {"UnknownEvent", "/targets/0/event", "o", "/event: the event is none of the categories"},
    {"NegativeAdjustment", "/settings/woe_adjust", -1, "/woe_adjust: a number from 0 up"},
    {"LargeAdjustment", "/settings/woe_adjust", 1e7, "/woe_adjust: a weight from 0 to 1000000"},
    {"LargestSmallBins", "/settings/small_bins", 1, "accepted"},
    {"SmallBinsAboveOne", "/settings/small_bins", 1.001, "/small_bins: a share from 0 to 1"},
    {"EqualCuts", "/results/0/cut_points/1", 0.1, "/cut_points/1: cut points ascend, but 0.1"},
    {"TextCut", "/results/0/cut_points/1", "2.5", "/cut_points/1: a number expected, not '2.5'"},
    {"NullCut", "/results/0/cut_points/0", nullptr, "/cut_points/0: a number expected, not null"},
    {"AddedCut", "/results/0/cut_points/2", 9, "/bin_weights: 3 cut points make 4 bins"},
    {"NoWeights", "/results/0/bin_weights", json::array(),
     "/bin_weights: 2 cut points make 3 bins"},
    {"NegativeWeight", "/results/0/bin_weights/1", -1, "/1: a number from 0 up expected, not -1"},
    {"OtherSum", "/results/0/bin_weights/1", 1, "/results/0/bin_weights: the weights sum up to 8"},
    {"ClassSum", "/results/0/class_weights/2/0", 2, "/class_weights/2: the weights sum up to 5"},
    {"ClassCount", "/results/0/class_weights/1", {0, 0, 0}, "/class_weights/1: 3 weights, but"},
    {"ValidAboveAll", "/results/0/weight_with_missing", 6, "/results/0: 'valid_weight' is above"},
    {"MissingMember", "/results/0/valid_weight", kRemoved, "/results/0: the member 'valid_weight'"},
    {"UnknownAttribute", "/results/1/attribute", "z", "/attribute: there is no attribute 'z'"},
    {"SamePair", "/results/1/attribute", "a",
     "/results/1: a result for this attribute came before"},
    {"SameName", "/attributes/1/name", "a", "/attributes/1/name: the variable 'a' appears twice"},
    {"WeightAsAttribute", "/attributes/1/name", "w", "/name: the variable 'w' appears twice"},
    {"SameCategory", "/targets/0/categories/1", "n", "/1: this category appears twice"},
    {"ContinuousTarget",
     "/targets/0",
     {{"name", "y"}, {"kind", "continuous"}},
     "/targets/0: a target has categories"},
    {"EmptyInterval", "/settings/weight_user_missing/interval/high", 1,
     "/interval: 'low' is above 'high'"},
    {"HugeCount", "/results/0/distinct_values", 1e30, "/distinct_values: a whole number from 0 up"},
    {"StatusWithoutCode", "/results/1/status/code", 0, "/status: code 0 belongs to the severity"},
    {"ObjectForList", "/results", json::object(), "/results: a list expected, not an object"},
};

TEST(BinFile, AnswersEveryEdit) {
  for (const auto& [name, pointer, value, message] : kEdits) {
    json file = Example();
    if (value.is_discarded()) {
      file = file.patch({{{"op", "remove"}, {"path", pointer}}});
    } else {
      file[json::json_pointer(pointer)] = value;
    }
    const std::string answer = RefusalOf(file.dump());
    EXPECT_NE(answer.find(message), std::string::npos) << name << ": " << answer;
  }
}

// Readers of version 2 would take the classes of such a file for nothing.
TEST(BinFile, HasTargetsOfEqualFrequencyBinsFromVersionThreeOn) {
  json file = Example();
  file["algorithm"] = "equal-frequency";
  file["settings"]["bins"] = 3;
  EXPECT_EQ(RefusalOf(file.dump()).rfind("bins.json: /targets: equal-frequency bins have", 0), 0u);
  file["version"] = 3;
  EXPECT_EQ(RefusalOf(file.dump()), "accepted");
  file.erase("targets");
  EXPECT_NE(RefusalOf(file.dump()).find("/: the member 'targets'"), std::string::npos);
}

struct BadText {
  const char* name;
  std::string text;
  const char* message;  // how it begins
};

const BadText kBadTexts[] = {
    {"Nothing", "", "bins.json:1: the file ends too early"},
    {"CutOff", "{\"format\":\n\"mcbin", "bins.json:2: the file ends too early"},
    {"Trailing", "{}\n{}", "bins.json:2: this is not JSON: "},
    {"NaN", "{\"a\": NaN}", "bins.json:1: this is not JSON: "},
    {"TooLarge", "{\"a\":\n1e999}", "bins.json:2: this is not JSON: number overflow"},
    {"Twice", "{\"a\": [0, {\"b\": 1, \"b\": 2}]}",
     "bins.json: /a/1: the member 'b' appears twice"},
    {"NotUtf8", "{\"\xFF\": 1}", "bins.json:1: this is not JSON: "},
    {"DeepNesting", std::string(1'000'000, '['), "bins.json: /0/0/0/0/0"},
    {"List", "[]", "bins.json: /: an object expected, not a list"},
};

TEST(BinFile, RefusesABadTextWithItsPlace) {
  for (const auto& [name, text, message] : kBadTexts) {
    const std::string answer = RefusalOf(text);
    EXPECT_EQ(answer.rfind(message, 0), 0u) << name << ": " << answer;
  }
}

}  // namespace
