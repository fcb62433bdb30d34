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
#include "binmodel/report/binreport.h"
#include "binmodel/report/eventmeasures.h"
#include "binmodel/report/numbertext.h"
#include "binmodel/report/reportcells.h"
#include "binmodel/report/reportwriter.h"
#include "binmodel/report/resultrecords.h"
#include "binmodel/report/shownresults.h"
#include "binmodel/report/texttable.h"
#include "binmodel/text/displaytext.h"
#include "binmodel/text/number.h"

namespace MCBinModel {

namespace {

using Align = TextTable::Align;

constexpr std::size_t kBarWidth = 4;         // of a class share
constexpr std::size_t kCutPointsWidth = 40;  // in a summary line

std::string CutPointsCell(const VariableInfo& attribute, const AttributeBins& bins) {
  const std::vector<std::string> cuts = NumberText(attribute, bins).OfCutPoints();
  if (cuts.empty()) return "-";
  std::string text;
  for (std::size_t i = 0; i < cuts.size(); ++i) {
    const std::string next = (i == 0 ? "" : ", ") + cuts[i];
    if (i > 0 && text.size() + next.size() > kCutPointsWidth) {
      return text + fmt::format(", \u2026 {} more", cuts.size() - i);
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
        fNumbers(model.GetAttribute(bins), bins),
        fAttribute(model.GetAttribute(bins)),
        fTarget(model.GetTarget(bins)) {
    if (HasTwoClasses(model, bins)) fEvidence = MeasureEvidence(model, bins);
  }

  const TextTable& Make() {
    AddColumns();
    for (std::size_t bin = 0; bin < fBins.binWeights.size(); ++bin) AddBin(bin);
    const MissingBin* const missing = FindMissingBin(fBins);
    if (missing != nullptr) AddMissing(*missing);
    if (fBins.binWeights.size() > 1 || missing != nullptr) AddTotal();
    return fTable;
  }

 private:
  // What a class gets: of few classes weight and share, of more the share alone, of many a mention
  // in one column for all. Of two classes the share is that of the event, the event rate.
  std::size_t CountClasses() const { return fTarget == nullptr ? 0 : fTarget->GetCategoryCount(); }
  bool HasClassColumns() const { return fTarget != nullptr && CountClasses() <= kMostClassColumns; }
  bool HasCountColumns() const { return CountClasses() <= kMostCountColumns; }
  bool HasBars() const { return fStyle.bars && HasCountColumns(); }

  void AddColumns() {
    fTable.AddColumn(fAttribute.IsCategorical() ? "codes" : "interval", Align::kLeft);
    fTable.AddColumn("weight", Align::kRight);
    fTable.AddColumn("share", Align::kRight);
    if (HasClassColumns()) {
      for (std::size_t code = 0; code < CountClasses(); ++code) {
        fTable.AddColumn(ElideText(fTarget->GetLabel(code), kLabelWidth), Align::kRight);
        if (HasCountColumns() && !fEvidence) AddShareColumn("%");
      }
    } else if (fTarget != nullptr) {
      fTable.AddColumn("largest classes", Align::kLeft);
    }
    if (fEvidence) {
      AddShareColumn("event rate");
      fTable.AddColumn("weight of evidence", Align::kRight);
      fTable.AddColumn("inf. value", Align::kRight);
    }
    if (fAttribute.IsCategorical()) fTable.AddColumn("categories", Align::kLeft);
  }

  void AddShareColumn(std::string header) {
    fTable.AddColumn(HasBars() ? header + std::string(1 + kBarWidth, ' ') : std::move(header),
                     Align::kRight);
  }

  void AddBin(std::size_t bin) {
    const bool rightClosed = fModel.settings.rightClosed;
    const bool hasClasses = bin < fBins.classWeights.size();
    std::vector<std::string> measures;
    if (fEvidence) {
      measures = {MeasureCell(fEvidence->weights[bin]), MeasureCell(fEvidence->values[bin])};
    }
    AddRow(fNumbers.OfInterval(bin, rightClosed), fBins.binWeights[bin],
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
        if (HasCountColumns()) cells.push_back(FormatNumber(classWeights[code]));
        if (!fEvidence) cells.push_back(ClassShareCell(code, classWeights[code], weight));
      }
    } else if (fTarget != nullptr) {
      cells.push_back(LargestClassesCell(*fTarget, classWeights, weight));
    }
    if (fEvidence) {
      const std::size_t event = fTarget->GetEvent();
      cells.push_back(ClassShareCell(event, classWeights[event], weight));
    }
    std::move(measures.begin(), measures.end(), std::back_inserter(cells));
    if (fAttribute.IsCategorical()) cells.push_back(std::move(categories));
    fTable.AddRow(std::move(cells));
  }

  std::string ClassShareCell(std::size_t code, double classWeight, double weight) const {
    std::string share = FormatShareOf(classWeight, weight);
    if (!HasBars()) return share;
    return share + " " +
           ShareBar(weight > 0.0 ? classWeight / weight : 0.0, kBarWidth, code, fStyle);
  }

  const BinModel& fModel;
  const TextStyle& fStyle;
  const AttributeBins& fBins;
  const NumberText fNumbers;
  const VariableInfo& fAttribute;
  const VariableInfo* const fTarget;
  std::optional<Evidence> fEvidence;  // of a target with two classes
  TextTable fTable;
};

std::string WeightAndValues(const BinModel& model, const AttributeBins& bins) {
  const std::string values = ValuesFact(model, bins);
  return WeightFact(bins) + (values.empty() ? "" : "; " + values);
}

// What stands above a result's table.
std::string Facts(const BinModel& model, const AttributeBins& bins) {
  std::string text = WeightAndValues(model, bins);
  if (bins.informationGain) {
    text += fmt::format("; gain {} of {} bits", FormatFixed(*bins.informationGain, 4),
                        FormatFixed(Entropy(SumClassWeights(bins)), 4));
  }
  return text;
}

std::string TwoClassFacts(const BinModel& model, const AttributeBins& bins) {
  const EventMeasures measures = MeasureEvent(model, bins);
  return fmt::format("{}; Gini {}, Kolmogorov-Smirnov {}",
                     InformationValueFact(bins, MeasureEvidence(model, bins), MeasureCell),
                     MeasureCell(measures.gini), MeasureCell(measures.kolmogorovSmirnov));
}

void WriteResult(const BinModel& model, const AttributeBins& bins, const TextStyle& style,
                 ReportWriter& writer) {
  writer.AddHeading(ResultTitle(model, bins));
  if (!bins.status.IsOK()) writer.AddFact(StatusCell(bins));
  writer.AddFact(Facts(model, bins));
  if (HasTwoClasses(model, bins)) writer.AddFact(TwoClassFacts(model, bins));
  writer.AddTable(BinTable(model, bins, style).Make());
}

// The lines of results, those with cut points and the others, in tables of their own.
class Summary {
 public:
  explicit Summary(const BinModel& model)
      : fModel(model),
        fHasTargets(!model.targets.empty()),
        fHasEvents(std::any_of(
            model.targets.begin(), model.targets.end(),
            [](const VariableInfo& target) { return target.GetCategoryCount() == 2; })) {
    AddNames(fRanking);
    if (fHasTargets) fRanking.AddColumn("gain", Align::kRight);
    if (fHasEvents) {
      for (const char* name : {"inf. value", "Gini", "KS"}) fRanking.AddColumn(name, Align::kRight);
    }
    fRanking.AddColumn("bins", Align::kRight);
    if (!fHasTargets) fRanking.AddColumn("deviation", Align::kRight);
    fRanking.AddColumn("cut points", Align::kLeft);
    fRanking.AddColumn("status", Align::kLeft);
    AddNames(fUncut);
    if (fHasEvents) fUncut.AddColumn("inf. value", Align::kRight);
    fUncut.AddColumn("status", Align::kLeft);
    fUncut.AddColumn("values", Align::kLeft);
  }

  void Add(const AttributeBins& bins) { bins.cutPoints.empty() ? AddUncut(bins) : AddRanked(bins); }

  const TextTable& GetRanking() const { return fRanking; }
  const TextTable& GetUncut() const { return fUncut; }

 private:
  void AddNames(TextTable& table) const {
    table.AddColumn("attribute", Align::kLeft);
    if (fModel.targets.size() > 1) table.AddColumn("target", Align::kLeft);
  }

  std::vector<std::string> NameCells(const AttributeBins& bins) const {
    std::vector<std::string> cells = {ElideText(fModel.GetAttribute(bins).name, kNameWidth)};
    if (fModel.targets.size() > 1) {
      cells.push_back(ElideText(fModel.GetTarget(bins)->name, kNameWidth));
    }
    return cells;
  }

  void AddRanked(const AttributeBins& bins) {
    std::vector<std::string> cells = NameCells(bins);
    if (fHasTargets) cells.push_back(MeasureCell(bins.informationGain));
    if (fHasEvents) {
      const EventMeasures measures = MeasureEvent(fModel, bins);
      for (const auto& measure :
           {measures.informationValue, measures.gini, measures.kolmogorovSmirnov}) {
        cells.push_back(MeasureCell(measure));
      }
    }
    cells.push_back(std::to_string(bins.binWeights.size()));
    if (!fHasTargets) {
      cells.push_back(FormatShare(LargestShareDeviation(bins, fModel.settings.bins)));
    }
    cells.insert(cells.end(), {CutPointsCell(fModel.GetAttribute(bins), bins), StatusCell(bins)});
    fRanking.AddRow(std::move(cells));
  }

  void AddUncut(const AttributeBins& bins) {
    std::vector<std::string> cells = NameCells(bins);
    if (fHasEvents) cells.push_back(MeasureCell(MeasureEvent(fModel, bins).informationValue));
    cells.push_back(StatusCell(bins));
    cells.push_back(WeightAndValues(fModel, bins) + BestSplitText(fModel, bins));
    fUncut.AddRow(std::move(cells));
  }

  const BinModel& fModel;
  const bool fHasTargets;
  const bool fHasEvents;  // a target has two classes
  TextTable fRanking;
  TextTable fUncut;
};

std::string Heading(const BinModel& model) {
  const std::uint64_t used = model.source.recordCount - model.source.dropped.GetTotal();
  const bool isSupervised = model.settings.algorithm == Algorithm::kSupervised;
  std::string heading =
      fmt::format("{} bins of {}: {} records", isSupervised ? "Supervised" : "Equal-frequency",
                  PrintableText(model.source.name), used);
  if (!isSupervised) heading += fmt::format(", {} bins asked for", model.settings.bins);
  if (model.targets.empty()) {
    return heading + fmt::format(", ideal share {}", FormatShare(1.0 / model.settings.bins));
  }
  std::string targets;
  for (const VariableInfo& target : model.targets) {
    targets += (targets.empty() ? "" : ", ") + ElideText(target.name, kNameWidth);
    const std::string event = EventFact(model, target);
    if (!event.empty()) targets += " (" + event + ")";
  }
  return heading + fmt::format(", target {}; gain in bits", targets);
}

}  // namespace

void WriteTextReport(const BinModel& model, const TextStyle& style, const TextSink& write) {
  const ShownResults shown(
      OrderByGain(model.results),
      [&](std::size_t i) -> const AttributeBins& { return model.results[i]; }, style);
  if (style.format != TableFormat::kText && style.format != TableFormat::kMarkdown) {
    const DataTable table =
        style.summaryOnly ? ListResults(model, shown.order) : ListBins(model, shown.order);
    return table.Write(style.format, write);
  }

  TextStyle look = style;
  if (style.format == TableFormat::kMarkdown) look.bars = look.color = false;
  ReportWriter writer(style.format, write);
  writer.AddTitle(Heading(model));
  for (const std::string& asked : model.refinements) {
    writer.AddFact("refined to have " + PrintableText(asked));
  }
  shown.AddFacts(writer);
  Summary summary(model);
  for (const std::size_t index : shown.order) summary.Add(model.results[index]);
  writer.AddSummary(summary.GetRanking());
  for (std::size_t i = 0; i < shown.tables; ++i) {
    WriteResult(model, model.results[shown.order[i]], look, writer);
  }
  writer.AddUncut(summary.GetUncut());
}

}  // namespace MCBinModel
