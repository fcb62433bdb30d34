#include <gtest/gtest.h>

#include <algorithm>
#include <nlohmann/json.hpp>
#include <string>
#include <vector>

#include "binmodel/apply/bincounter.h"
#include "binmodel/report/binreport.h"
#include "binmodel/samplebins.h"

namespace {

using MCBinModel::BinModel;

std::string TextOf(const BinModel& model, const MCBinModel::TextStyle& style = {}) {
  std::string text;
  WriteTextReport(model, style, [&](std::string_view piece) { text += piece; });
  return text;
}

bool Contains(const std::string& text, const std::string& part) {
  return text.find(part) != std::string::npos;
}

TEST(TextReport, NamesTheLargestClasses) {
  const std::string text =
      TextOf(SampleBins({"a", "b", "c", "d", "e", "f", "g", "h", "i", "j", "k", "l", "m"},
                        {{"x", {{1, 9, 2, 8, 3, 7}, std::vector<double>(13, 1)}}}));
  EXPECT_TRUE(Contains(text, "b 9 (30.0%), d 8 (26.7%), f 7 (23.3%), 3 more\n")) << text;
}

TEST(TextReport, MeasuresDeviationFromTheShareThatWasAskedFor) {
  BinModel model = SampleBins({}, {{"x", {{50}, {30}, {20}}}});
  model.settings.bins = 4;
  const std::string text = TextOf(model);
  EXPECT_TRUE(Contains(text, "ideal share 25.0%\n")) << text;
  EXPECT_TRUE(Contains(text, "  x             3      25.0%  1, 2        ok\n")) << text;
}

TEST(TextReport, LinesUpInEveryScript) {
  const std::vector<std::vector<double>> weights = {{3, 1}, {1, 3}};
  const std::string text = TextOf(SampleBins(
      {"ก่", "\u202Ey"}, {{"ชื่อ", weights}, {"日本", weights}, {"e\u0301\u0302", weights}}));
  EXPECT_TRUE(Contains(text, "  ชื่อ         0.2500      1.0986  0.5000  0.5000     2")) << text;
  EXPECT_TRUE(Contains(text, "  日本       0.2500      1.0986  0.5000  0.5000     2")) << text;
  EXPECT_TRUE(Contains(text, "  e\u0301\u0302          0.2500      1.0986  0.5000  0.5000     2"))
      << text;
  EXPECT_TRUE(Contains(
      text,
      "  interval   weight   share  ก่  \\u202Ey  event rate  weight of evidence  inf. value\n"))
      << text;
  EXPECT_TRUE(Contains(
      text,
      "  (-inf, 1]       4   50.0%  3        1       25.0%             -1.0986      0.5493\n"))
      << text;
}

TEST(TextReport, ShowsMissingCasesAsTheLastBin) {
  BinModel model = SampleBins({"n", "y"}, {{"x", {{3, 1}, {1, 3}}}});
  model.results[0].missing = {2.0, {1.0, 1.0}};
  model.results[0].weightWithMissing = 11.0;
  const std::string text = TextOf(model);
  EXPECT_TRUE(Contains(text, "target t (event y); gain")) << text;
  EXPECT_TRUE(Contains(text, "weight 8 valid, 2 missing, 1 without target;")) << text;
  EXPECT_TRUE(Contains(text,
                       "information value 0.8789 (1.0986 without missing); Gini 0.4800, "
                       "Kolmogorov-Smirnov 0.4000\n"))
      << text;
  EXPECT_TRUE(
      Contains(text,
               "  (1, +inf)       4   40.0%  1  3       75.0%              1.0986      0.4394\n"
               "  missing         2   20.0%  1  1       50.0%              0.0000      0.0000\n"
               "  total          10  100.0%  5  5       50.0%                          0.8789\n"))
      << text;
}

TEST(TextReport, SaysThatDistinctValuesMayBeThoseOfMoreCases) {
  BinModel model = SampleBins({"n", "y"}, {{"x", {{3, 1}, {1, 3}}}});
  MCBinModel::AttributeBins& bins = model.results[0];
  bins.missing = {2.0, {1.0, 1.0}};
  bins.minimum = bins.maximum = 1.0;
  bins.distinctValues = 2;
  model.settings.algorithm = MCBinModel::Algorithm::kEqualFrequency;
  const char* const inAllCases = "; 2 distinct values in all cases, with the target from 1 to 1;";
  EXPECT_TRUE(Contains(TextOf(model), inAllCases)) << TextOf(model);
  bins.weightWithMissing = 10.0;
  EXPECT_TRUE(Contains(TextOf(model), "; 2 distinct values from 1 to 1;")) << TextOf(model);
}

TEST(TextReport, DrawsSharesInTheColoursOfTheirClasses) {
  const std::string text =
      TextOf(SampleBins({"n", "y", "z"}, {{"x", {{5, 3, 0}, {1, 1, 1}}}}), {true, true});
  EXPECT_TRUE(Contains(text, "62.5% \x1b[34m██▌\x1b[0m ")) << text;
  EXPECT_TRUE(Contains(text, "37.5% \x1b[33m█▌\x1b[0m")) << text;
}

// One of each kind: with cut points, without, and with a name that tables could take for markup.
BinModel MixedModel() {
  BinModel model =
      SampleBins({"n", "\u202Ey"}, {{"a|\"b,\n", {{3, 1}, {1, 3}}}, {"flat", {{4, 4}}}});
  model.results[0].cutPoints = {0.15410000000000001};
  model.results[0].minimum = 0.1;
  model.results[0].maximum = 0.2;
  model.results[0].distinctValues = 3;
  model.results[0].missing = {2.0, {0.0, 2.0}};
  return model;
}

TEST(TextReport, GivesAttributesWithoutCutPointsALineAtTheEnd) {
  const std::string text = TextOf(MixedModel());
  EXPECT_TRUE(Contains(text, "  (-inf, 0.1541] ")) << text;
  EXPECT_TRUE(Contains(text, "\nWithout cut points\n")) << text;
  EXPECT_EQ(text.find("flat"), text.rfind("flat")) << text;
  MCBinModel::TextStyle first;
  first.top = 1;
  first.summaryOnly = true;
  const std::string summary = TextOf(MixedModel(), first);
  EXPECT_TRUE(Contains(summary, "  the first 1 of 2 results\n")) << summary;
  EXPECT_FALSE(Contains(summary, "flat") || Contains(summary, "interval")) << summary;
}

TEST(TextReport, RoundsNumbersAsFarAsTheyStayApart) {
  BinModel model = SampleBins({}, {{"x", {{1}, {1}, {1}, {1}}}});
  MCBinModel::AttributeBins& bins = model.results[0];
  bins.minimum = 0.0;
  bins.maximum = 1e4;
  bins.distinctValues = 1000;
  bins.cutPoints = {1.0000000001, 1.0000000002, 1234.5678912345};
  EXPECT_TRUE(Contains(TextOf(model), "  1.0000000001, 1.0000000002, ")) << TextOf(model);
  EXPECT_TRUE(Contains(TextOf(model), "  (1.0000000002, 1235] ")) << TextOf(model);
  bins.cutPoints = {10.123456789012, 23.315, 1234.5678912345};
  EXPECT_TRUE(Contains(TextOf(model), "  10.12, 23.315, 1235 ")) << TextOf(model);
  bins.minimum = 0.123456789012;
  bins.cutPoints = {0.123456809012, 23.315, 1234.5678912345};
  EXPECT_TRUE(Contains(TextOf(model), "  0.12345681, 23.315, 1235 ")) << TextOf(model);
}

std::string Formatted(MCBinModel::TableFormat format, bool summaryOnly = false) {
  MCBinModel::TextStyle style{true, true, format, summaryOnly, 0};
  return TextOf(MixedModel(), style);
}

TEST(TextReport, HasFormatsForProgramsWithAllDigits) {
  using MCBinModel::TableFormat;
  EXPECT_TRUE(
      Contains(Formatted(TableFormat::kCsv),
               "attribute,target,bin,label,low,high,weight,share,event_rate,weight_of_evidence,"
               "information_value,weight:n,weight:\\u202Ey,share:n,share:\\u202Ey\n"
               "\"a|\"\"b,\\n\",t,0,\"(-inf, 0.15410000000000001]\",,0.15410000000000001,4,0.4,"
               "0.25,-1.50407"))
      << Formatted(TableFormat::kCsv);
  const auto records = nlohmann::json::parse(Formatted(TableFormat::kJson, true));
  EXPECT_EQ(records[0]["attribute"], "a|\"b,\n");
  EXPECT_EQ(records[0]["cut_points"], nlohmann::json({0.15410000000000001}));
  EXPECT_EQ(records[0]["information_value"], "inf");
  EXPECT_EQ(records[1]["minimum"], nullptr);
  EXPECT_EQ(Formatted(TableFormat::kJson).find("\u202E"), std::string::npos);
}

TEST(TextReport, EscapesMarkdown) {
  const std::string text = Formatted(MCBinModel::TableFormat::kMarkdown);
  EXPECT_TRUE(Contains(text, "\n## a\\|\"b,\\\\n by t\n")) << text;
  EXPECT_TRUE(Contains(text, "\n| (-inf, 0.1541\\] | 4 | ")) << text;
  EXPECT_FALSE(Contains(text, "\x1b[")) << text;
}

TEST(EvaluationReport, SetsTheDataBesideTheBinFile) {
  const BinModel model = SampleBins({"n", "y"}, {{"x", {{3, 1}, {1, 3}}}});
  MCBinModel::Recount recount;
  recount.recordCount = 12;
  recount.dropped.zero = 2;
  recount.results.push_back({0, model.results[0], {0.0}});
  MCBinModel::AttributeBins& data = recount.results[0].counts;
  data.classWeights = {{1, 1}, {2, 6}};
  data.binWeights = {2, 8};
  data.validWeight = 10;
  std::string text;
  WriteEvaluationReport(model, recount, "new\x1b.csv",
                        [&](std::string_view piece) { text += piece; });
  EXPECT_TRUE(Contains(text, " on new\\x1B.csv: 10 records, target t (event y)\n"));
  EXPECT_TRUE(
      Contains(text,
               "  x             2     0.4159  0.2500  0.2500  0.5000  0.1905  0.5000  0.1905  "
               "differ\n"))
      << text;
  EXPECT_TRUE(Contains(text,
                       "  (-inf, 1]       4     2  50.0%  20.0%  1     1       25.0%  50.0%   "
                       "          -1.0986  -0.8473\n"))
      << text;
}

// Recounts that say what the model says.
MCBinModel::NamedRecount SameData(const BinModel& model, const std::string& name) {
  MCBinModel::NamedRecount data{name, {}};
  for (std::size_t i = 0; i < model.results.size(); ++i) {
    data.recount.results.push_back({i, model.results[i], {}});
  }
  return data;
}

std::string EvaluationOf(const BinModel& model, const std::vector<std::string>& names,
                         const MCBinModel::TextStyle& style = {}) {
  std::vector<MCBinModel::NamedRecount> data;
  for (const std::string& name : names) data.push_back(SameData(model, name));
  std::string text;
  WriteEvaluationReport(model, data, style, [&](std::string_view piece) { text += piece; });
  return text;
}

TEST(Reports, FoldWideResults) {
  std::vector<std::pair<std::string, std::vector<std::vector<double>>>> attributes;
  for (int i = 0; i < 1000; ++i) {
    attributes.push_back({"flat" + std::to_string(i), {{4, 4}}});
    if (i < 120) attributes.push_back({"cut" + std::to_string(i), {{3, 1}, {1, 3}}});
  }
  BinModel model = SampleBins({"n", "y"}, attributes);
  model.results[0].minimum = 1.0;
  model.results[0].maximum = 2.0;
  const auto lines = [](const std::string& text) {
    return std::count(text.begin(), text.end(), '\n');
  };
  const std::string one = EvaluationOf(model, {"d"});
  const std::string two = EvaluationOf(model, {"d", "e"});
  for (const std::string& text : {TextOf(model), one, two}) {
    EXPECT_LT(lines(text), 3'000);
    EXPECT_TRUE(Contains(text, "  tables of the first 100 of 120 results with cut points\n"));
    EXPECT_TRUE(Contains(text, "\nWithout cut points"));
    EXPECT_TRUE(Contains(text, "\ncut99 by t"));
    EXPECT_FALSE(Contains(text, "\ncut100 by t") || Contains(text, "\nflat0 by t"));
  }
  EXPECT_TRUE(Contains(one, "not counted by class; from 1 to 2  weight 8 valid"));
  EXPECT_EQ(two.find("  cut100 "), two.rfind("  cut100 ")) << "its stability alone";
  MCBinModel::TextStyle style;
  style.top = 1120;
  EXPECT_TRUE(Contains(EvaluationOf(model, {"d"}, style), "\ncut119 by t"));
}

TEST(EvaluationReport, TellsDataOfLongNamesApart) {
  const BinModel model = SampleBins({"n", "y"}, {{"x", {{3, 1}, {1, 3}}}});
  const std::string ends = EvaluationOf(
      model, {"/a/portfolio_of_customers_2024-01.csv", "/b/portfolio_of_customers_2024-02.csv"});
  EXPECT_TRUE(
      Contains(ends, "\n  attribute  portfolio_\u202624-01.csv  portfolio_\u202624-02.csv\n"))
      << ends;
  EXPECT_TRUE(Contains(ends, "\n  portfolio_of_customers_2024-02.csv  ")) << ends;
  const std::string middle = EvaluationOf(model, {"customers_of_2024-01_checked_by_hand.csv",
                                                  "customers_of_2024-02_checked_by_hand.csv"});
  EXPECT_TRUE(
      Contains(middle, "  \u202601_checke\u2026_hand.csv  \u202602_checke\u2026_hand.csv\n"))
      << middle;
}

TEST(EvaluationReport, ComparesMissingCasesWhereBothSidesCountedThem) {
  BinModel model = SampleBins({"n", "y"}, {{"x", {{3, 1}, {1, 3}}}});
  MCBinModel::Recount recount;
  recount.results.push_back({0, model.results[0], {0.0}});
  recount.results[0].counts.missing = {8.0, {2.0, 6.0}};
  const auto report = [&] {
    std::string text;
    WriteEvaluationReport(model, recount, "d", [&](std::string_view piece) { text += piece; });
    return text;
  };
  EXPECT_TRUE(Contains(report(), "  x             2     0.0000  ")) << report();
  EXPECT_TRUE(Contains(report(), "the bin file has not counted its missing cases")) << report();
  model.results[0].missing = {2.0, {1.0, 1.0}};
  EXPECT_TRUE(Contains(report(), "  stability 0.4159 (0.0000 without missing)\n")) << report();
  EXPECT_TRUE(Contains(report(), "  x             2     0.4159           0.0000  ")) << report();
  EXPECT_TRUE(Contains(report(), "  missing         2     8  20.0%  50.0%  1     6")) << report();
  model.results[0].missing = {0.0, {0.0, 0.0}};
  EXPECT_TRUE(Contains(report(),
                       "  stability +inf (0.0000 without missing); infinite, as only the "
                       "data have missing cases\n"))
      << report();
  recount.results[0].counts.binWeights = {8, 0};
  EXPECT_TRUE(Contains(report(), "(+inf without missing); infinite, as a bin is empty on one side"))
      << report();
  recount.results[0].counts.binWeights = {2, 6};
  std::string several;
  WriteEvaluationReport(model, {{"d", recount}, {"e", recount}}, {},
                        [&](std::string_view piece) { several += piece; });
  EXPECT_TRUE(Contains(several,
                       "\nStability without missing\n  attribute       d       e\n"
                       "  x          0.2747  0.2747\n"))
      << several;
  MCBinModel::TextStyle records;
  records.format = MCBinModel::TableFormat::kJson;
  records.summaryOnly = true;
  std::string text;
  WriteEvaluationReport(model, {{"d", recount}}, records,
                        [&](std::string_view piece) { text += piece; });
  EXPECT_NEAR(nlohmann::json::parse(text)[0]["stability_without_missing"], 0.274653, 1e-6);
}

}  // namespace
