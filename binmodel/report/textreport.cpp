#include <fmt/format.h>

#include <algorithm>
#include <iterator>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "binmodel/apply/binvalues.h"
#include "binmodel/measure/binstatistics.h"
#include "binmodel/measure/evidence.h"
#include "binmodel/model/bincodes.h"
#include "binmodel/model/intervaltext.h"
#include "binmodel/report/binreport.h"
#include "binmodel/report/reportcells.h"
#include "binmodel/report/texttable.h"
#include "binmodel/text/displaytext.h"
#include "binmodel/text/number.h"

namespace MCBinModel {

namespace {

using Align = TextTable::Align;

constexpr std::size_t kBarWidth = 4;         // of a class share
constexpr std::size_t kCutPointsWidth = 40;  // in a summary line

std::string CutPointsCell(const std::vector<double>& cutPoints) {
  if (cutPoints.empty()) return "-";
  std::string text;
  for (std::size_t i = 0; i < cutPoints.size(); ++i) {
    const std::string next = (i == 0 ? "" : ", ") + FormatNumber(cutPoints[i]);
    if (i > 0 && text.size() + next.size() > kCutPointsWidth) {
      return text + fmt::format(", \u2026 {} more", cutPoints.size() - i);
    }
    text += next;
  }
  return text;
}

// The categories whose codes lie in a bin, for attributes that are binned by code.
std::string CategoriesCell(const VariableInfo& attribute, const AttributeBins& bins,
                           std::size_t bin, bool rightClosed) {
  constexpr std::size_t kCategoriesWidth = 60;
  std::string text;
  for (const std::size_t code : CodesInBin(attribute, bins.cutPoints, bin, rightClosed)) {
    text += (text.empty() ? "" : ", ") + attribute.GetLabel(code);
  }
  return ElideText(text, kCategoriesWidth);
}

// "b 120 (60.0%), a 70 (35.0%), 5 more" for targets with many classes.
std::string LargestClassesCell(const VariableInfo& target, const std::vector<double>& weights,
                               double total) {
  constexpr std::size_t kMostNamed = 3;
  std::vector<std::size_t> codes;
  for (std::size_t code = 0; code < weights.size(); ++code) {
    if (weights[code] > 0.0) codes.push_back(code);
  }
  std::stable_sort(codes.begin(), codes.end(),
                   [&](std::size_t a, std::size_t b) { return weights[a] > weights[b]; });
  std::string text;
  for (std::size_t i = 0; i < codes.size() && i < kMostNamed; ++i) {
    text += fmt::format("{}{} {} ({})", i == 0 ? "" : ", ",
                        ElideText(target.GetLabel(codes[i]), kLabelWidth),
                        FormatNumber(weights[codes[i]]), FormatShareOf(weights[codes[i]], total));
  }
  if (codes.size() > kMostNamed) text += fmt::format(", {} more", codes.size() - kMostNamed);
  return text;
}

// The table of one result.
class BinTable {
 public:
  BinTable(const BinModel& model, const AttributeBins& bins, const TextStyle& style)
      : fModel(model),
        fStyle(style),
        fBins(bins),
        fAttribute(model.GetAttribute(bins)),
        fTarget(model.GetTarget(bins)) {
    if (fTarget != nullptr && fTarget->GetCategoryCount() == 2) {
      fEvidence = MeasureEvidence(model, bins);
    }
  }

  std::string Render() {
    AddColumns();
    for (std::size_t bin = 0; bin < fBins.binWeights.size(); ++bin) AddBin(bin);
    const MissingBin* const missing = FindMissingBin(fBins);
    if (missing != nullptr) AddMissing(*missing);
    if (fBins.binWeights.size() > 1 || missing != nullptr) AddTotal();
    return fTable.Render();
  }

 private:
  bool HasClassColumns() const {
    return fTarget != nullptr && fTarget->GetCategoryCount() <= kMostClassColumns;
  }

  void AddColumns() {
    fTable.AddColumn(fAttribute.IsCategorical() ? "codes" : "interval", Align::kLeft);
    fTable.AddColumn("weight", Align::kRight);
    fTable.AddColumn("share", Align::kRight);
    if (HasClassColumns()) {
      for (std::size_t code = 0; code < fTarget->GetCategoryCount(); ++code) {
        fTable.AddColumn(ElideText(fTarget->GetLabel(code), kLabelWidth), Align::kRight);
        fTable.AddColumn(fStyle.bars ? "%" + std::string(1 + kBarWidth, ' ') : "%", Align::kRight);
      }
    } else if (fTarget != nullptr) {
      fTable.AddColumn("largest classes", Align::kLeft);
    }
    if (fEvidence) {
      fTable.AddColumn("evidence", Align::kRight);
      fTable.AddColumn("inf. value", Align::kRight);
    }
    if (fAttribute.IsCategorical()) fTable.AddColumn("categories", Align::kLeft);
  }

  void AddBin(std::size_t bin) {
    const bool rightClosed = fModel.settings.rightClosed;
    const bool hasClasses = bin < fBins.classWeights.size();
    std::vector<std::string> measures;
    if (fEvidence) {
      measures = {MeasureCell(fEvidence->weights[bin]), MeasureCell(fEvidence->values[bin])};
    }
    AddRow(IntervalText(fBins.cutPoints, bin, rightClosed), fBins.binWeights[bin],
           hasClasses ? fBins.classWeights[bin] : std::vector<double>(), std::move(measures),
           fAttribute.IsCategorical() ? CategoriesCell(fAttribute, fBins, bin, rightClosed) : "");
  }

  void AddMissing(const MissingBin& missing) {
    std::vector<std::string> measures;
    if (fEvidence) {
      measures = {MeasureCell(fEvidence->missingWeight), MeasureCell(fEvidence->missingValue)};
    }
    AddRow(kMissingLabel, missing.weight, missing.classWeights, std::move(measures), "");
  }

  void AddTotal() {
    std::vector<std::string> measures;
    if (fEvidence) measures = {"", MeasureCell(fEvidence->informationValue)};
    AddRow("total", CountedWeight(fBins), SumCountedClassWeights(fBins), std::move(measures), "");
  }

  void AddRow(std::string name, double weight, const std::vector<double>& classWeights,
              std::vector<std::string> measures, std::string categories) {
    std::vector<std::string> cells = {std::move(name), FormatNumber(weight),
                                      FormatShareOf(weight, CountedWeight(fBins))};
    if (HasClassColumns()) {
      for (std::size_t code = 0; code < classWeights.size(); ++code) {
        cells.push_back(FormatNumber(classWeights[code]));
        cells.push_back(ClassShareCell(code, classWeights[code], weight));
      }
    } else if (fTarget != nullptr) {
      cells.push_back(LargestClassesCell(*fTarget, classWeights, weight));
    }
    std::move(measures.begin(), measures.end(), std::back_inserter(cells));
    if (fAttribute.IsCategorical()) cells.push_back(std::move(categories));
    fTable.AddRow(std::move(cells));
  }

  std::string ClassShareCell(std::size_t code, double classWeight, double weight) const {
    std::string share = FormatShareOf(classWeight, weight);
    if (!fStyle.bars) return share;
    return share + " " +
           ShareBar(weight > 0.0 ? classWeight / weight : 0.0, kBarWidth, code, fStyle);
  }

  const BinModel& fModel;
  const TextStyle& fStyle;
  const AttributeBins& fBins;
  const VariableInfo& fAttribute;
  const VariableInfo* const fTarget;
  std::optional<Evidence> fEvidence;  // of a target with two classes
  TextTable fTable;
};

// What stands above a result's table.
std::string Title(const BinModel& model, const AttributeBins& bins) {
  std::string text = "\n" + ElideText(model.GetAttribute(bins).name, kNameWidth);
  const VariableInfo* const target = model.GetTarget(bins);
  if (target != nullptr) text += " by " + ElideText(target->name, kNameWidth);
  if (!bins.status.IsOK()) text += "\n  " + StatusCell(bins) + BestSplitText(bins);
  text += "\n  " + WeightFact(bins);
  if (bins.minimum && bins.maximum) {
    text += "; " + DescribeValues(bins.distinctValues, *bins.minimum, *bins.maximum);
  }
  if (bins.informationGain) {
    text += fmt::format("; gain {} of {} bits", FormatFixed(*bins.informationGain, 4),
                        FormatFixed(Entropy(SumClassWeights(bins)), 4));
  }
  if (target != nullptr && target->GetCategoryCount() == 2 && !bins.binWeights.empty()) {
    text += "; " + InformationValueFact(bins, MeasureEvidence(model, bins), MeasureCell);
  }
  return text + "\n";
}

std::string SummaryByTarget(const BinModel& model, const std::vector<std::size_t>& order) {
  const bool severalTargets = model.targets.size() > 1;
  TextTable table;
  table.AddColumn("attribute", Align::kLeft);
  if (severalTargets) table.AddColumn("target", Align::kLeft);
  table.AddColumn("gain", Align::kRight);
  table.AddColumn("bins", Align::kRight);
  table.AddColumn("cut points", Align::kLeft);
  table.AddColumn("status", Align::kLeft);
  for (const std::size_t index : order) {
    const AttributeBins& bins = model.results[index];
    std::vector<std::string> cells = {ElideText(model.GetAttribute(bins).name, kNameWidth)};
    if (severalTargets) cells.push_back(ElideText(model.GetTarget(bins)->name, kNameWidth));
    cells.insert(cells.end(),
                 {MeasureCell(bins.informationGain), std::to_string(bins.binWeights.size()),
                  CutPointsCell(bins.cutPoints), StatusCell(bins)});
    table.AddRow(std::move(cells));
  }
  return table.Render();
}

std::string SummaryWithoutTarget(const BinModel& model) {
  TextTable table;
  table.AddColumn("attribute", Align::kLeft);
  table.AddColumn("bins", Align::kRight);
  table.AddColumn("deviation", Align::kRight);
  table.AddColumn("cut points", Align::kLeft);
  table.AddColumn("status", Align::kLeft);
  for (const AttributeBins& bins : model.results) {
    const bool hasBins = !bins.binWeights.empty();
    table.AddRow({ElideText(model.GetAttribute(bins).name, kNameWidth),
                  std::to_string(bins.binWeights.size()),
                  hasBins ? FormatShare(LargestShareDeviation(bins, model.settings.bins)) : "-",
                  CutPointsCell(bins.cutPoints), StatusCell(bins)});
  }
  return table.Render();
}

std::string Heading(const BinModel& model) {
  const std::uint64_t used = model.source.recordCount - model.source.dropped.GetTotal();
  const bool isSupervised = model.settings.algorithm == Algorithm::kSupervised;
  std::string heading =
      fmt::format("{} bins of {}: {} records", isSupervised ? "Supervised" : "Equal-frequency",
                  PrintableText(model.source.name), used);
  if (!isSupervised) heading += fmt::format(", {} bins asked for", model.settings.bins);
  if (model.targets.empty()) {
    return heading + fmt::format(", ideal share {}\n", FormatShare(1.0 / model.settings.bins));
  }
  std::string targets;
  for (const VariableInfo& target : model.targets) {
    targets += (targets.empty() ? "" : ", ") + ElideText(target.name, kNameWidth);
    const std::string event = EventFact(model, target);
    if (!event.empty()) targets += " (" + event + ")";
  }
  return heading + fmt::format(", target {}; gain in bits\n", targets);
}

}  // namespace

void WriteTextReport(const BinModel& model, const TextStyle& style, const TextSink& write) {
  const std::vector<std::size_t> order = OrderByGain(model.results);
  write(Heading(model));
  for (const std::string& asked : model.refinements) {
    write("  refined to have " + PrintableText(asked) + "\n");
  }
  write("\n");
  write(model.targets.empty() ? SummaryWithoutTarget(model) : SummaryByTarget(model, order));
  for (const std::size_t index : order) {
    const AttributeBins& bins = model.results[index];
    write(Title(model, bins));
    if (!bins.binWeights.empty()) write(BinTable(model, bins, style).Render());
  }
}

}  // namespace MCBinModel
