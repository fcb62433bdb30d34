#include "binmodel/report/htmlresult.h"

#include <fmt/format.h>

#include <cmath>
#include <numeric>
#include <utility>

#include "binmodel/apply/binvalues.h"
#include "binmodel/measure/binstatistics.h"
#include "binmodel/measure/evidence.h"
#include "binmodel/model/binlookup.h"
#include "binmodel/model/intervaltext.h"
#include "binmodel/model/severity.h"
#include "binmodel/report/numbertext.h"
#include "binmodel/report/reportcells.h"
#include "binmodel/report/svgchart.h"
#include "binmodel/text/displaytext.h"
#include "binmodel/text/escape.h"
#include "binmodel/text/number.h"

namespace MCBinModel {

namespace {

constexpr std::size_t kTitleWidth = 100;
constexpr std::size_t kClassWidth = 40;
constexpr std::size_t kBinLabelWidth = 160;  // a bin may hold many categories
constexpr std::size_t kLongestLine = 24;  // of an interval: on a phone others are to be seen, too

std::string Cell(const std::string& content) { return "<td>" + content + "</td>"; }

class HtmlResult {
 public:
  HtmlResult(const BinModel& model, std::size_t result, const HtmlTarget& target)
      : fModel(model),
        fResult(result),
        fBins(model.results[result]),
        fNumbers(model.GetAttribute(fBins), fBins),
        fAttribute(model.GetAttribute(fBins)),
        fTarget(target),
        fTotals(SumCountedClassWeights(fBins)),
        fMissing(FindMissingBin(fBins)) {
    if (HasEvidence()) fEvidence = MeasureEvidence(model, fBins);
    for (std::size_t bin = 0; bin < fBins.binWeights.size(); ++bin) {
      fNames.push_back(BinName(bin));
    }
  }

  std::string Render() const {
    std::string html = fmt::format("<section id=\"r{}\"{}>\n<div class=\"head\">\n{}", fResult,
                                   fTarget.event ? " class=\"two\"" : "", Title() + Facts());
    if (!fBins.status.IsOK()) {
      html +=
          fmt::format("<p class=\"{}\">{}{}</p>\n", IsPlainNoCut(fBins.status) ? "soft" : "warn",
                      StatusCell(fBins), BestSplitText(fModel, fBins));
    }
    return html + Legend() + "</div>\n<div class=\"pair\"><div class=\"scroll\">" +
           RenderBinChart(Chart()) + "</div>\n" + Table() + "</div>\n</section>\n";
  }

 private:
  bool HasEvidence() const { return fTarget.event && !fBins.classWeights.empty(); }

  std::string BinName(std::size_t bin) const {
    const bool rightClosed = fModel.settings.rightClosed;
    if (!fAttribute.IsCategorical()) return fNumbers.OfInterval(bin, rightClosed);
    return ElideText(BinLabel(fAttribute, fBins.cutPoints, bin, rightClosed), kBinLabelWidth);
  }

  std::string Title() const {
    std::string title = HtmlText(ElideText(fAttribute.name, kTitleWidth));
    const VariableInfo* const target = fModel.GetTarget(fBins);
    if (target != nullptr) {
      title +=
          " <span class=\"soft\">by " + HtmlText(ElideText(target->name, kTitleWidth)) + "</span>";
    }
    return "<h3>" + title + "</h3>\n";
  }

  std::string Facts() const {
    std::string facts = "<span>" + WeightFact(fBins) + "</span> ";
    const std::string values = ValuesFact(fModel, fBins);
    if (!values.empty()) facts += "<span>" + HtmlText(values) + "</span> ";
    if (fBins.informationGain) {
      facts += fmt::format("<span>information gain {} of {} bits</span> ",
                           HtmlMeasure(fBins.informationGain),
                           HtmlMeasure(Entropy(SumClassWeights(fBins))));
    }
    if (HasEvidence()) {
      facts += "<span>" + InformationValueFact(fBins, fEvidence, HtmlMeasure) + "</span>";
    }
    return "<p class=\"facts\">" + facts + "</p>\n";
  }

  std::string Legend() const {
    std::string items;
    for (std::size_t group = 0; group < fTarget.groups.size(); ++group) {
      items += fmt::format("<li><i class=\"k{}\"></i>{}</li>", group, GroupLabel(group));
    }
    if (items.empty()) return {};
    return "<ul class=\"legend\">" + items + "</ul>\n";
  }

  std::string GroupLabel(std::size_t group) const {
    return HtmlText(ElideText(fTarget.groups[group].label, kClassWidth));
  }

  BinChart Chart() const {
    BinChart chart;
    chart.description =
        fmt::format("Weight of {} bins of {}", fBins.binWeights.size(), fAttribute.name);
    for (std::size_t bin = 0; bin < fBins.binWeights.size(); ++bin) {
      chart.bins.push_back(ChartBin(bin));
    }
    chart.missing = MissingChartBin();
    if (fAttribute.IsCategorical()) {
      chart.binLabels = fNames;
    } else {
      chart.borderLabels = fNumbers.OfCutPoints();
    }
    chart.lineCount = fTarget.event ? 1 : fTarget.groups.size();
    chart.lineCaption = "share of each class";
    if (fTarget.event) {
      chart.lineCaption = fmt::format("share of {}; dashed: overall",
                                      ElideText(fTarget.groups.front().label, kClassWidth));
    }
    if (fTarget.event && CountedWeight(fBins) > 0.0) {
      chart.overallShares = {fTotals[*fTarget.event] / CountedWeight(fBins)};
    }
    if (fTarget.groups.empty()) chart.referenceWeight = fBins.validWeight / fModel.settings.bins;
    return chart;
  }

  BinChart::Bin ChartBin(std::size_t bin) const {
    const double weight = fBins.binWeights[bin];
    if (!fTarget.groups.empty()) return ClassBin(fNames[bin], weight, fBins.classWeights[bin]);
    return {{fNames[bin], WeightLine(weight)}, weight, {weight}};
  }

  std::string WeightLine(double weight) const {
    return fmt::format("weight {} ({})", FormatNumber(weight),
                       HtmlShare(weight, CountedWeight(fBins)));
  }

  BinChart::Bin ClassBin(std::string name, double weight,
                         const std::vector<double>& classWeights) const {
    BinChart::Bin chartBin{{std::move(name), WeightLine(weight)}, weight, {}};
    for (const ClassGroup& group : fTarget.groups) {
      const double part = GroupWeight(group, classWeights);
      chartBin.parts.push_back(part);
      chartBin.tooltip.push_back(fmt::format("{}: {} ({})", ElideText(group.label, kClassWidth),
                                             FormatNumber(part), HtmlShare(part, weight)));
    }
    return chartBin;
  }

  // Of bins that have not counted it by class, whatever is missing.
  BinChart::Bin MissingChartBin() const {
    if (fMissing != nullptr && !fTarget.groups.empty()) {
      return ClassBin(kMissingLabel, fMissing->weight, fMissing->classWeights);
    }
    const double weight = fMissing != nullptr ? fMissing->weight : UncountedWeight();
    const char* const what =
        fMissing != nullptr || fTarget.groups.empty() ? "value" : "value or target";
    return {{fmt::format("{} missing: weight {} ({} of all)", what, FormatNumber(weight),
                         HtmlShare(weight, fBins.weightWithMissing))},
            weight,
            {}};
  }

  // What is missing and was not counted as a bin.
  double UncountedWeight() const {
    return fBins.missing ? 0.0 : fBins.weightWithMissing - fBins.validWeight;
  }

  std::string Table() const {
    std::string html =
        "<div class=\"scroll\"><table>\n<thead><tr>" + HeaderCells() + "</tr></thead>\n<tbody>\n";
    for (std::size_t bin = 0; bin < fBins.binWeights.size(); ++bin) html += BinRow(bin);
    if (fMissing != nullptr) html += MissingRow();
    html += TotalRow();
    if (UncountedWeight() > 0.0) {
      html += fmt::format("<tr><td class=\"t soft\">missing</td>{}</tr>\n",
                          Cell(FormatNumber(UncountedWeight())));
    }
    return html + "</tbody></table></div>\n";
  }

  std::string HeaderCells() const {
    std::string html = fmt::format("<th class=\"t\">{}</th><th>weight</th><th>share</th>",
                                   fAttribute.IsCategorical() ? "categories" : "interval");
    for (std::size_t group = 0; group < fTarget.groups.size(); ++group) {
      html += fmt::format("<th class=\"c\">{}</th><th>%</th>", GroupLabel(group));
    }
    if (HasEvidence()) html += "<th>weight of<br/>evidence</th><th>information<br/>value</th>";
    return html;
  }

  std::string BinRow(std::size_t bin) const {
    const std::vector<double> none;
    std::string html = WeightCells(HtmlText(fNames[bin]), fBins.binWeights[bin],
                                   fTarget.groups.empty() ? none : fBins.classWeights[bin]);
    if (HasEvidence()) {
      html += Cell(HtmlMeasure(fEvidence.weights[bin])) + Cell(HtmlMeasure(fEvidence.values[bin]));
    }
    return "<tr>" + html + "</tr>\n";
  }

  std::string MissingRow() const {
    std::string html = WeightCells(kMissingLabel, fMissing->weight, fMissing->classWeights);
    if (HasEvidence()) {
      html +=
          Cell(HtmlMeasure(fEvidence.missingWeight)) + Cell(HtmlMeasure(fEvidence.missingValue));
    }
    return "<tr>" + html + "</tr>\n";
  }

  std::string TotalRow() const {
    std::string html = WeightCells("total", CountedWeight(fBins), fTotals);
    if (HasEvidence()) html += Cell("") + Cell(HtmlMeasure(fEvidence.informationValue));
    return "<tr class=\"sum\">" + html + "</tr>\n";
  }

  std::string WeightCells(const std::string& name, double weight,
                          const std::vector<double>& classWeights) const {
    const bool isWide = fAttribute.IsCategorical() || name.size() > kLongestLine;
    std::string html = fmt::format("<td class=\"t{}\">{}</td>", isWide ? " w" : "", name) +
                       Cell(FormatNumber(weight)) + Cell(HtmlShare(weight, CountedWeight(fBins)));
    for (const ClassGroup& group : fTarget.groups) {
      const double part = GroupWeight(group, classWeights);
      html += Cell(FormatNumber(part)) + Cell(HtmlShare(part, weight));
    }
    return html;
  }

  const BinModel& fModel;
  const std::size_t fResult;
  const AttributeBins& fBins;
  const NumberText fNumbers;
  const VariableInfo& fAttribute;
  const HtmlTarget& fTarget;
  const std::vector<double> fTotals;  // of the classes
  const MissingBin* const fMissing;
  Evidence fEvidence;
  std::vector<std::string> fNames;  // of the bins
};

// The share of the event in a bin; "–" without weight.
std::string EventShare(const HtmlTarget& target, const std::vector<double>& classWeights) {
  return HtmlShare(classWeights[*target.event],
                   std::accumulate(classWeights.begin(), classWeights.end(), 0.0));
}

// Their range, or the categories; "–" without one.
std::string PlainValues(const BinModel& model, const AttributeBins& bins) {
  if (!bins.minimum || !bins.maximum) return "–";
  const VariableInfo& attribute = model.GetAttribute(bins);
  if (attribute.IsCategorical()) {
    return ElideText(BinLabel(attribute, bins.cutPoints, 0, model.settings.rightClosed),
                     kClassWidth);
  }
  const NumberText numbers(attribute, bins);
  return numbers.OfValue(*bins.minimum) + " to " + numbers.OfValue(*bins.maximum);
}

std::string PlainRow(const BinModel& model, std::size_t result, const HtmlTarget& target) {
  const AttributeBins& bins = model.results[result];
  const MissingBin* const missing = FindMissingBin(bins);
  const std::string name = ElideText(model.GetAttribute(bins).name, kTitleWidth);
  std::string cells = fmt::format(
      "<td class=\"t w\">{}</td><td>{}</td><td>{}</td><td>{}</td><td class=\"t\">{}</td>",
      HtmlText(name), FormatNumber(bins.validWeight),
      FormatNumber(missing != nullptr ? missing->weight
                                      : bins.weightWithMissing - bins.validWeight),
      KnowsDistinctValues(bins) ? std::to_string(bins.distinctValues) : "–",
      HtmlText(PlainValues(model, bins)));
  if (target.event) {
    const bool counted = !bins.classWeights.empty();
    cells += Cell(HtmlInformationValue(model, bins)) +
             Cell(counted ? EventShare(target, SumClassWeights(bins)) : "–") +
             Cell(missing != nullptr ? EventShare(target, missing->classWeights) : "–");
  }
  return fmt::format("<tr id=\"r{}\">{}<td class=\"t s l\">{}{}</td></tr>\n", result, cells,
                     StatusCell(bins), BestSplitText(model, bins));
}

}  // namespace

bool IsPlainHtmlResult(const AttributeBins& bins) { return bins.cutPoints.empty(); }

std::string RenderHtmlPlainTable(const BinModel& model, const std::vector<std::size_t>& results,
                                 const HtmlTarget& target, const std::string& id) {
  if (results.empty()) return {};
  std::string html =
      "<h3 id=\"" + id +
      "\">Without cut points</h3>\n<div class=\"scroll plain\"><table>\n<thead><tr>"
      "<th class=\"t\">attribute</th><th>valid</th><th>missing</th><th class=\"c\">distinct "
      "values</th>"
      "<th class=\"t\">values</th>";
  if (target.event) {
    html += fmt::format(
        "<th class=\"c\">information value</th><th class=\"c\">share of {}</th><th class=\"c\">in "
        "missing</th>",
        HtmlText(ElideText(target.groups.front().label, kClassWidth)));
  }
  html += "<th class=\"t\">status</th></tr></thead>\n<tbody>\n";
  for (const std::size_t result : results) html += PlainRow(model, result, target);
  return html + "</tbody></table></div>\n";
}

std::string RenderHtmlResult(const BinModel& model, std::size_t result, const HtmlTarget& target) {
  return HtmlResult(model, result, target).Render();
}

std::string HtmlMeasure(const std::optional<double>& measure) {
  if (!measure) return "–";
  if (std::isinf(*measure)) return *measure > 0.0 ? "∞" : "−∞";
  const std::string text = FormatFixed(std::abs(*measure), 4);
  const bool negative = *measure < 0.0 && text != "0.0000";
  return negative ? "−" + text : text;
}

std::string HtmlInformationValue(const BinModel& model, const AttributeBins& bins) {
  const bool counted = !bins.classWeights.empty();
  return HtmlMeasure(counted ? MeasureEvidence(model, bins).informationValue : std::nullopt);
}

std::string HtmlShare(double part, double whole) {
  return whole > 0.0 ? FormatShare(part / whole) : "–";
}

}  // namespace MCBinModel
