// What the page says; report.py reads it with an XML parser.

#include <gtest/gtest.h>

#include <cmath>
#include <cstdlib>
#include <string>
#include <string_view>
#include <vector>

#include "binmodel/report/binreport.h"
#include "binmodel/report/svgchart.h"
#include "binmodel/samplebins.h"

namespace {

using MCBinModel::BinModel;
using MCBinModel::MakeHtmlReport;

std::size_t Count(std::string_view text, std::string_view part) {
  std::size_t count = 0;
  for (auto at = text.find(part); at != text.npos; at = text.find(part, at + 1)) ++count;
  return count;
}

// The numbers that follow each `before`.
std::vector<double> NumbersBehind(const std::string& text, const std::string& before) {
  std::vector<double> numbers;
  for (auto at = text.find(before); at != text.npos; at = text.find(before, at + 1)) {
    numbers.push_back(std::strtod(text.c_str() + at + before.size(), nullptr));
  }
  return numbers;
}

TEST(HtmlReport, TakesSharesOfTheRightWhole) {
  const std::string page = MakeHtmlReport(SampleBins({"n", "y"}, {{"x", {{20, 10}, {5, 25}}}}));
  EXPECT_EQ(Count(page, "<td>2</td><td>25.0%</td><td class=\"t s\">ok</td>"), 1u);
  EXPECT_EQ(Count(page, "missing: weight 20 (25.0% of all)"), 1u);
  EXPECT_EQ(Count(page, "<td>30</td><td>50.0%</td><td>10</td><td>33.3%</td><td>20</td>"), 1u);
  EXPECT_EQ(Count(page, "<td>25.5%</td>"), 1u);  // 0.25 of 0.9799 bits
}

TEST(HtmlReport, TellsTheDeviationFromTheShareThatWasAskedFor) {
  BinModel model = SampleBins({}, {{"x", {{50}, {30}, {20}}}});
  model.settings.bins = 4;
  EXPECT_EQ(Count(MakeHtmlReport(model), "x</a></td><td>25.0%</td>"), 1u);
}

TEST(HtmlReport, MakesAnEmptyCellInfiniteUnlessAdjusted) {
  BinModel model = SampleBins({"no", "yes"}, {{"a", {{0, 4}, {6, 2}, {3, 0}, {0, 0}}}});
  const std::string plain = MakeHtmlReport(model);
  EXPECT_EQ(Count(plain, "<td>∞</td>") > 0 && Count(plain, "<td>−∞</td>") > 0, true);
  model.settings.evidenceAdjustment = 0.5;
  const std::string adjusted = MakeHtmlReport(model);
  EXPECT_EQ(Count(adjusted, "∞"), 0u);
  EXPECT_EQ(Count(adjusted, "<td>2.5337</td>"), 1u);  // ln((4.5 / 7.5) / (0.5 / 10.5))
}

TEST(HtmlReport, PutsAttributesWithoutCutPointsIntoOneTable) {
  BinModel model =
      SampleBins({"n", "y"}, {{"a", {{3, 1}}}, {"b", {{20, 10}, {5, 25}}}, {"c", {{2, 2}}}});
  model.source.name = "/home/x/data.csv";
  model.results[0].missing = {4.0, {1.0, 3.0}};
  model.refinements = {"at most 3 bins"};
  const std::string page = MakeHtmlReport(model);
  EXPECT_EQ(Count(page, "<section"), 1u);
  EXPECT_EQ(Count(page, "<svg viewBox"), 1u);
  EXPECT_EQ(Count(page, "<a href=\"#r1\">b</a>"), 1u);
  EXPECT_EQ(Count(page, "<a href=\"#r"), 1u);
  EXPECT_EQ(Count(page, "<a href=\"#p0\">2 attributes without cut points have a row each</a>"), 1u);
  EXPECT_EQ(Count(page, "<h3 id=\"p0\">"), 1u);
  EXPECT_EQ(Count(page, "<tr id=\"r0\"><td class=\"t w\">a</td><td>4</td><td>4</td>"), 1u);
  EXPECT_EQ(Count(page, "<td>1.0986</td><td>25.0%</td><td>75.0%</td>"),
            1u);  // of y with a value, and without
  EXPECT_EQ(Count(page, "<tr id=\"r2\">"), 1u);
  EXPECT_EQ(Count(page, "bins of data.csv</"), 2u);
  EXPECT_EQ(Count(page, "<p>Refined to have at most 3 bins.</p>"), 1u);
}

TEST(HtmlReport, RoundsNumbersAsTablesDoAndNamesCategories) {
  BinModel model = SampleBins({"n", "y"}, {{"x", {{20, 10}, {5, 25}}}, {"c", {{3, 1}, {1, 3}}}});
  model.results[0].cutPoints = {0.15410000000000001};
  model.attributes[1].kind = MCBinModel::VariableKind::kStringCategorical;
  model.attributes[1].texts = {"<a>", "b", "c"};
  for (MCBinModel::AttributeBins& bins : model.results) {
    bins.minimum = 0.0;
    bins.maximum = 2.0;
    bins.distinctValues = 3;
  }
  const std::string page = MakeHtmlReport(model);
  EXPECT_EQ(Count(page, "0.15410"), 0u);
  EXPECT_EQ(Count(page, "<td class=\"t\">(-inf, 0.1541]</td>"), 1u);
  EXPECT_EQ(Count(page, "<span>3 distinct values from 0 to 2</span>"), 1u);
  EXPECT_EQ(Count(page, "<span>3 categories</span>"), 1u);
  model.attributes[0].isTime = true;
  model.results[0].cutPoints = {0.25};
  EXPECT_EQ(Count(MakeHtmlReport(model), "<td class=\"t w\">(-inf, 1970-01-01T00:00:00.25]"), 1u)
      << "long ones are broken into lines";
  model.results[1].cutPoints.clear();
  model.results[1].binWeights = {8};
  model.results[1].classWeights = {{4, 4}};
  EXPECT_EQ(Count(MakeHtmlReport(model), "<td>3</td><td class=\"t\">{&lt;a&gt;, b, c}</td>"), 1u);
}

TEST(HtmlReport, LinksAttributesAndStaysSmall) {
  std::vector<std::pair<std::string, std::vector<std::vector<double>>>> attributes;
  for (int i = 0; i < 200; ++i)
    attributes.push_back({"a" + std::to_string(i), {{30, 10}, {10, 30}}});
  const std::string many = MakeHtmlReport(SampleBins({"n", "y"}, attributes));
  for (int i = 0; i < 200; ++i) {
    EXPECT_EQ(Count(many, "<a href=\"#r" + std::to_string(i) + "\">"), 1u);
    EXPECT_EQ(Count(many, "<section id=\"r" + std::to_string(i) + "\""), 1u);
  }
  EXPECT_LT(many.size(), 700'000u);

  std::vector<std::vector<double>> bins;
  for (int i = 0; i < 1000; ++i) bins.push_back({static_cast<double>(i % 5), 3, 1});
  const std::string long_ = MakeHtmlReport(SampleBins({"x", "y", "z"}, {{"a", bins}}));
  EXPECT_EQ(Count(long_, "<title>"), 1u + 1000u + 1u);  // the page's, and the missing ones
  EXPECT_LT(Count(long_, "<text"), 50u);
  EXPECT_LT(long_.size(), 600'000u);
}

TEST(HtmlReport, ShowsMissingCasesAsTheLastBin) {
  BinModel model = SampleBins({"n", "y"}, {{"x", {{20, 10}, {5, 25}}}});
  EXPECT_EQ(Count(MakeHtmlReport(model), "Missing cases are a bin"), 0u) << "not counted";
  model.results[0].missing = {15.0, {10.0, 5.0}};
  const std::string page = MakeHtmlReport(model);
  const std::string row =
      "<td>15</td><td>20.0%</td><td>5</td><td>33.3%</td><td>10</td><td>66.7%</td><td>−0.8267</td>";
  EXPECT_EQ(Count(page, "<td class=\"t\">missing</td>" + row), 1u) << page;
  EXPECT_EQ(Count(page, "<td class=\"t\">total</td><td>75</td><td>100.0%</td><td>40</td>"), 1u);
  EXPECT_EQ(Count(page, "<title>missing\nweight 15 (20.0%)\ny: 5 (33.3%)\nn: 10 (66.7%)</title>"),
            1u);
  EXPECT_EQ(Count(page, "<td>2</td><td>20.0%</td><td class=\"t s\">ok</td>"), 1u);
  EXPECT_EQ(Count(page, "Missing cases are a bin"), 1u);
}

TEST(BinChart, CutsATooHighMissingBarOffAndKeepsItsShares) {
  MCBinModel::BinChart chart;
  chart.bins = {{{}, 10, {5, 5}}};
  chart.missing = {{}, 1000, {250, 750}};
  chart.lineCount = 1;
  const std::string svg = RenderBinChart(chart);
  const std::string first = svg.substr(svg.rfind("<path class=\"k0\""));
  const std::string second = svg.substr(svg.rfind("<path class=\"k1\""));
  // "M<x> <top>h<width>V<bottom>"
  const auto heightOf = [](const std::string& path) {
    const double top = std::strtod(path.c_str() + path.find(' ', path.find(" d=") + 1), nullptr);
    return NumbersBehind(path, "V")[0] - top;
  };
  EXPECT_NEAR(heightOf(second), 3.0 * heightOf(first), 0.05);
  EXPECT_EQ(Count(svg, "\u2191 1000"), 1u);
  EXPECT_EQ(Count(svg, "<circle"), 2u);
}

TEST(BinChart, JoinsNoCategoriesByALine) {
  MCBinModel::BinChart chart;
  chart.bins = {{{}, 10, {5, 5}}, {{}, 20, {4, 16}}};
  chart.lineCount = 1;
  chart.borderLabels = {"1"};
  EXPECT_EQ(Count(RenderBinChart(chart), "class=\"line"), 1u);
  chart.borderLabels.clear();
  chart.binLabels = {"{a rather long category, another}", "{b}"};
  const std::string svg = RenderBinChart(chart);
  EXPECT_EQ(Count(svg, "class=\"line"), 0u);
  EXPECT_EQ(Count(svg, "<circle"), 2u);
  EXPECT_EQ(Count(svg, "{b}"), 1u) << "each has its label";
}

TEST(BinChart, DrawsEachBinsOwnWeights) {
  MCBinModel::BinChart chart;
  chart.bins = {{{}, 10, {5, 5}}, {{}, 20, {4, 16}}, {{}, 40, {40, 0}}};
  chart.lineCount = 1;
  const std::string svg = RenderBinChart(chart);

  // The line's marks are as high above its axis as the first part's shares 0.5, 0.2 and 1.
  const std::vector<double> marks = NumbersBehind(svg, "cy=\"");
  ASSERT_EQ(marks.size(), 3u);
  const double whole = (marks[1] - marks[2]) / 0.8;
  EXPECT_NEAR(marks[0] - marks[2], 0.5 * whole, 0.02);
  const auto bases = NumbersBehind(svg, "<path class=\"base\" d=\"M56 ");
  ASSERT_EQ(bases.size(), 2u);
  EXPECT_NEAR(bases[1] - marks[2], whole, 0.02);

  // Bars of the first part stand on the axis, those of the second on them.
  const std::string first = svg.substr(svg.find("class=\"k0\""));
  const std::vector<double> bottoms = NumbersBehind(first.substr(0, first.find("/>")), "V");
  EXPECT_EQ(bottoms, (std::vector<double>{bases[0], bases[0], bases[0]}));
  const std::string second = svg.substr(svg.find("class=\"k1\""));
  const std::vector<double> stacked = NumbersBehind(second.substr(0, second.find("/>")), "V");
  ASSERT_EQ(stacked.size(), 2u);
  EXPECT_NEAR(bases[0] - stacked[0], 5.0 / 4.0 * (bases[0] - stacked[1]), 0.02);
}

}  // namespace
