#include "binmodel/report/comparisonreport.h"

#include <fmt/format.h>

#include <cmath>
#include <optional>
#include <string>
#include <utility>

#include "binmodel/apply/bincounter.h"
#include "binmodel/apply/binvalues.h"
#include "binmodel/measure/binstatistics.h"
#include "binmodel/measure/evidence.h"
#include "binmodel/report/comparedbins.h"
#include "binmodel/report/evaluationcells.h"
#include "binmodel/report/eventmeasures.h"
#include "binmodel/report/numbertext.h"
#include "binmodel/report/reportcells.h"
#include "binmodel/report/texttable.h"
#include "binmodel/text/displaytext.h"
#include "binmodel/text/number.h"

namespace MCBinModel {

namespace {

using Align = TextTable::Align;
using Measure = std::optional<double>;

bool IsInfiniteIndex(const Measure& measure) { return measure && std::isinf(*measure); }

// One result of the bin file beside its recount.
class Comparison {
 public:
  Comparison(const BinModel& model, const RecountedBins& recounted)
      : fModel(model),
        fRecounted(recounted),
        fBins(model, recounted),
        fFile(fBins.file),
        fData(fBins.data),
        fAttribute(model.GetAttribute(fFile)),
        fTarget(model.GetTarget(fFile)) {
    if (!HasTwoClasses(model, fFile)) return;
    fFileEvidence = MeasureEvidence(model, fFile);
    fDataEvidence = MeasureEvidence(model, fData);
  }
  Comparison(const Comparison&) = delete;
  Comparison& operator=(const Comparison&) = delete;

  std::vector<std::string> SummaryRow(bool withoutMissing) const {
    std::vector<std::string> cells = {ElideText(fAttribute.name, kNameWidth),
                                      std::to_string(fFile.cutPoints.size() + 1),
                                      MeasureCell(StabilityOfBins(fFile, fData))};
    if (withoutMissing) cells.push_back(MeasureCell(fBins.StabilityWithoutMissing()));
    if (fTarget != nullptr) {
      cells.push_back(MeasureCell(fFile.informationGain));
      cells.push_back(MeasureCell(fData.informationGain));
    }
    if (fFileEvidence) {
      const EventMeasures file = MeasureEvent(fModel, fFile);
      const EventMeasures data = MeasureEvent(fModel, fFile, fData);
      for (const Measure& measure :
           {file.gini, data.gini, file.kolmogorovSmirnov, data.kolmogorovSmirnov}) {
        cells.push_back(MeasureCell(measure));
      }
    }
    cells.push_back(CountsCell());
    return cells;
  }

  bool HasCutPoints() const { return !fFile.cutPoints.empty(); }

  // Of a result without cut points.
  std::vector<std::string> UncutRow(bool withStability) const {
    std::vector<std::string> cells = {ElideText(fAttribute.name, kNameWidth)};
    if (withStability) cells.push_back(MeasureCell(StabilityOfBins(fFile, fData)));
    cells.insert(cells.end(), {CountsCell(), WeightAndRange(fFile, fFile),
                               WeightAndRange(fRecounted.counts, fData)});
    return cells;
  }

  void Write(ReportWriter& writer) const {
    writer.AddHeading(ResultTitle(fModel, fFile));
    writer.AddFact(DescribeSide("bin file", fFile, fFile, fFileEvidence));
    writer.AddFact(DescribeSide("data", fRecounted.counts, fData, fDataEvidence));
    AddStability(writer);
    AddMidpoints(writer);
    writer.AddTable(MakeTable());
  }

 private:
  std::string CountsCell() const { return HasSameCounts(fFile, fData) ? "equal" : "differ"; }

  // `counted` may know more than `bins`, which are compared.
  std::string WeightAndRange(const AttributeBins& counted, const AttributeBins& bins) const {
    const std::string weight = WeightFact(counted);
    if (!bins.minimum || !bins.maximum || fAttribute.IsCategorical()) return weight;
    const NumberText numbers(fAttribute, fFile);
    return fmt::format("{}; from {} to {}", weight, numbers.OfValue(*bins.minimum),
                       numbers.OfValue(*bins.maximum));
  }

  std::string DescribeSide(const char* name, const AttributeBins& counted,
                           const AttributeBins& bins,
                           const std::optional<Evidence>& evidence) const {
    std::string line = fmt::format("{}: {}", name, WeightAndRange(counted, bins));
    if (bins.modelEntropy && bins.informationGain) {
      line += fmt::format("; entropy {}, gain {} bits", MeasureCell(bins.modelEntropy),
                          MeasureCell(bins.informationGain));
    }
    if (evidence) line += "; " + InformationValueFact(bins, *evidence, MeasureCell);
    return line;
  }

  // Why the stability index is infinite, if it is.
  std::string DescribeOneSided() const {
    if (!IsInfiniteIndex(StabilityOfBins(fFile, fData))) return "";
    if (IsInfiniteIndex(fBins.StabilityWithoutMissing())) {
      return "; infinite, as a bin is empty on one side";
    }
    if (FindMissingBin(fFile) == nullptr) return "; infinite, as only the data have missing cases";
    return FindMissingBin(fData) == nullptr ? "; infinite, as the data have no missing cases" : "";
  }

  void AddStability(ReportWriter& writer) const {
    if (LeavesOutMissing(fModel, fRecounted)) {
      writer.AddFact(
          "the bin file has not counted its missing cases as a bin, so no measure knows them");
    } else if (fBins.HasMissing() && fFile.binWeights.size() == fData.binWeights.size()) {
      writer.AddFact(fmt::format("stability {} ({} without missing){}",
                                 MeasureCell(StabilityOfBins(fFile, fData)),
                                 MeasureCell(fBins.StabilityWithoutMissing()), DescribeOneSided()));
    }
  }

  void AddMidpoints(ReportWriter& writer) const {
    if (fModel.GetTarget(fModel.results[fRecounted.result]) != nullptr) {
      return;  // whose bins hold the cases that their cut points say
    }
    const bool rightClosed = fModel.settings.rightClosed;
    for (const std::size_t cut : FindRoundedMidpoints(fFile, fRecounted, rightClosed)) {
      writer.AddFact(fmt::format(
          "cut point {} is a midpoint that rounded onto the value {} it: the bin file counts the "
          "weight {} of that value {} the cut point, apply and evaluate put it {}",
          fAttribute.FormatValue(fFile.cutPoints[cut]), rightClosed ? "above" : "below",
          FormatNumber(fRecounted.cutWeights[cut]), rightClosed ? "above" : "below",
          rightClosed ? "below" : "above"));
    }
  }

  // Those that have a column of weights: of two the event, of some more all.
  std::vector<std::size_t> ShownClasses() const {
    if (fFileEvidence) return {fTarget->GetEvent()};
    std::vector<std::size_t> codes;
    const std::size_t count = fTarget == nullptr ? 0 : fTarget->GetCategoryCount();
    for (std::size_t code = 0; code < count && count <= kMostCountColumns; ++code) {
      codes.push_back(code);
    }
    return codes;
  }

  TextTable MakeTable() const {
    TextTable table;
    table.AddColumn(fAttribute.IsCategorical() ? "categories" : "interval", Align::kLeft);
    AddPair(table, "weight");
    AddPair(table, "share");
    for (const std::size_t code : ShownClasses()) {
      AddPair(table, ElideText(fTarget->GetLabel(code), kLabelWidth));
    }
    if (fFileEvidence) {
      AddPair(table, "event rate");
      AddPair(table, "weight of evidence");
    }
    const std::vector<std::string> names = BinNames(fModel, fFile);
    for (std::size_t bin = 0; bin <= fFile.cutPoints.size(); ++bin) {
      table.AddRow(
          Row(names[bin], SideOf(fFile, fFileEvidence, bin), SideOf(fData, fDataEvidence, bin)));
    }
    if (fBins.HasMissing()) {
      table.AddRow(Row(names.back(), MissingSideOf(fFile, fFileEvidence),
                       MissingSideOf(fData, fDataEvidence)));
    }
    return table;
  }

  static void AddPair(TextTable& table, std::string name) {
    table.AddColumn(std::move(name), Align::kRight);
    table.AddColumn("data", Align::kRight);
  }

  // One bin on one side; no weights where a side has no bins.
  struct Side {
    double weight = 0.0;
    std::vector<double> classWeights = {};
    std::optional<double> evidence = std::nullopt;
  };

  static Side SideOf(const AttributeBins& bins, const std::optional<Evidence>& evidence,
                     std::size_t bin) {
    Side side;
    if (bin < bins.binWeights.size()) side.weight = bins.binWeights[bin];
    if (bin < bins.classWeights.size()) side.classWeights = bins.classWeights[bin];
    if (evidence && bin < evidence->weights.size()) side.evidence = evidence->weights[bin];
    return side;
  }

  static Side MissingSideOf(const AttributeBins& bins, const std::optional<Evidence>& evidence) {
    return {bins.missing->weight, bins.missing->classWeights,
            evidence ? evidence->missingWeight : std::nullopt};
  }

  std::vector<std::string> Row(std::string name, const Side& file, const Side& data) const {
    std::vector<std::string> cells = {std::move(name), FormatNumber(file.weight),
                                      FormatNumber(data.weight),
                                      FormatShareOf(file.weight, CountedWeight(fFile)),
                                      FormatShareOf(data.weight, CountedWeight(fData))};
    const auto weightOf = [](const Side& side, std::size_t code) {
      return code < side.classWeights.size() ? side.classWeights[code] : 0.0;
    };
    for (const std::size_t code : ShownClasses()) {
      cells.push_back(FormatNumber(weightOf(file, code)));
      cells.push_back(FormatNumber(weightOf(data, code)));
    }
    if (fFileEvidence) {
      const std::size_t event = fTarget->GetEvent();
      cells.push_back(FormatShareOf(weightOf(file, event), file.weight));
      cells.push_back(FormatShareOf(weightOf(data, event), data.weight));
    }
    if (fFileEvidence) {
      cells.push_back(MeasureCell(file.evidence));
      cells.push_back(MeasureCell(data.evidence));
    }
    return cells;
  }

  const BinModel& fModel;
  const RecountedBins& fRecounted;
  const ComparedBins fBins;
  const AttributeBins& fFile;
  const AttributeBins& fData;
  const VariableInfo& fAttribute;
  const VariableInfo* const fTarget;
  std::optional<Evidence> fFileEvidence;  // of a target with two classes
  std::optional<Evidence> fDataEvidence;
};

TextTable MakeSummary(const BinModel& model, const NamedRecount& data, bool withoutMissing) {
  const AttributeBins& first = data.recount.results.front().counts;
  TextTable summary;
  summary.AddColumn("attribute", Align::kLeft);
  summary.AddColumn("bins", Align::kRight);
  summary.AddColumn("stability", Align::kRight);
  if (withoutMissing) summary.AddColumn("without missing", Align::kRight);
  std::vector<const char*> measures;
  if (first.target) measures.push_back("gain");
  if (HasTwoClasses(model, first)) measures.insert(measures.end(), {"Gini", "KS"});
  for (const char* measure : measures) {
    summary.AddColumn(measure, Align::kRight);
    summary.AddColumn("data", Align::kRight);
  }
  summary.AddColumn("counts", Align::kLeft);
  return summary;
}

TextTable MakeUncut(bool withStability) {
  TextTable table;
  table.AddColumn("attribute", Align::kLeft);
  if (withStability) table.AddColumn("stability", Align::kRight);
  for (const char* name : {"counts", "bin file", "data"}) table.AddColumn(name, Align::kLeft);
  return table;
}

}  // namespace

void WriteComparison(const BinModel& model, const NamedRecount& data, const ShownResults& shown,
                     ReportWriter& writer) {
  const bool withoutMissing = AnyHasMissing(model, data, shown.order);
  TextTable summary = MakeSummary(model, data, withoutMissing);
  TextTable uncut = MakeUncut(withoutMissing);
  for (const std::size_t index : shown.order) {
    const Comparison comparison(model, data.recount.results[index]);
    if (comparison.HasCutPoints()) {
      summary.AddRow(comparison.SummaryRow(withoutMissing));
    } else {
      uncut.AddRow(comparison.UncutRow(withoutMissing));
    }
  }
  writer.AddSummary(summary);
  for (std::size_t i = 0; i < shown.tables; ++i) {
    Comparison(model, data.recount.results[shown.order[i]]).Write(writer);
  }
  writer.AddUncut(uncut);
}

}  // namespace MCBinModel
