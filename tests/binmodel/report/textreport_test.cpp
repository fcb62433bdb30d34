#include <gtest/gtest.h>

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
      TextOf(SampleBins({"a", "b", "c", "d", "e", "f", "g"}, {{"x", {{1, 9, 2, 8, 3, 7, 0}}}}));
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
  EXPECT_TRUE(Contains(text, "  ชื่อ         0.2500     2")) << text;
  EXPECT_TRUE(Contains(text, "  日本       0.2500     2")) << text;
  EXPECT_TRUE(Contains(text, "  e\u0301\u0302          0.2500     2")) << text;
  EXPECT_TRUE(Contains(
      text, "  interval   weight   share  ก่      %  \\u202Ey      %  evidence  inf. value\n"))
      << text;
  EXPECT_TRUE(Contains(
      text, "  (-inf, 1]       4   50.0%  3  75.0%        1  25.0%   -1.0986      0.5493\n"))
      << text;
}

TEST(TextReport, ShowsMissingCasesAsTheLastBin) {
  BinModel model = SampleBins({"n", "y"}, {{"x", {{3, 1}, {1, 3}}}});
  model.results[0].missing = {2.0, {1.0, 1.0}};
  model.results[0].weightWithMissing = 11.0;
  const std::string text = TextOf(model);
  EXPECT_TRUE(Contains(text, "target t (event y); gain")) << text;
  EXPECT_TRUE(Contains(text, "weight 8 valid, 2 missing, 1 without target;")) << text;
  EXPECT_TRUE(Contains(text, "information value 0.8789 (1.0986 without missing)\n")) << text;
  EXPECT_TRUE(Contains(text,
                       "  (1, +inf)       4   40.0%  1  25.0%  3  75.0%    1.0986      0.4394\n"
                       "  missing         2   20.0%  1  50.0%  1  50.0%    0.0000      0.0000\n"
                       "  total          10  100.0%  5  50.0%  5  50.0%                0.8789\n"))
      << text;
}

TEST(TextReport, DrawsSharesInTheColoursOfTheirClasses) {
  const std::string text = TextOf(SampleBins({"n", "y"}, {{"x", {{5, 3}}}}), {true, true});
  EXPECT_TRUE(Contains(text, "62.5% \x1b[34m██▌\x1b[0m ")) << text;
  EXPECT_TRUE(Contains(text, "37.5% \x1b[33m█▌\x1b[0m")) << text;
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
  EXPECT_TRUE(
      Contains(text, " on new\\x1B.csv: 10 records, target t; evidence is above 0 where y "));
  EXPECT_TRUE(Contains(text, "  x             2     0.4159  0.2500  0.2500  differ\n")) << text;
  EXPECT_TRUE(Contains(text,
                       "  (-inf, 1]       4     2  50.0%  20.0%  3     1  1     1   -1.0986  "
                       "-0.8473\n"))
      << text;
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
  EXPECT_TRUE(Contains(report(), "  missing         2     8  20.0%  50.0%  1     2  1     6"))
      << report();
}

}  // namespace
