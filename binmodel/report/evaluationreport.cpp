#include <fmt/format.h>

#include <optional>
#include <utility>
#include <vector>

#include "binmodel/apply/bincounter.h"
#include "binmodel/measure/binstatistics.h"
#include "binmodel/model/binlookup.h"
#include "binmodel/report/binreport.h"
#include "binmodel/report/reportcells.h"
#include "binmodel/report/texttable.h"
#include "binmodel/text/displaytext.h"
#include "binmodel/text/number.h"

namespace MCBinModel {

namespace {

using Align = TextTable::Align;

constexpr std::size_t kIntervalWidth = 60;

// One result of the bin file beside its recount.
class Comparison {
 public:
  Comparison(const BinModel& model, const RecountedBins& recounted)
      : fModel(model),
        fRecounted(recounted),
        fFile(model.results[recounted.result]),
        fData(recounted.counts),
        fAttribute(model.GetAttribute(fFile)),
        fTarget(model.GetTarget(fFile)) {
    if (fTarget != nullptr && fTarget->GetCategoryCount() == 2) fEvent = EventCategory(*fTarget);
  }

  std::vector<std::string> SummaryRow() const {
    std::vector<std::string> cells = {ElideText(fAttribute.name, kNameWidth),
                                      std::to_string(fFile.cutPoints.size() + 1),
                                      MeasureCell(Stability())};
    if (fTarget != nullptr) {
      cells.push_back(MeasureCell(fFile.informationGain));
      cells.push_back(MeasureCell(fData.informationGain));
    }
    cells.emplace_back(HasSameCounts(fFile, fData) ? "equal" : "differ");
    return cells;
  }

  std::string Render() const {
    return Title() + DescribeSide("bin file", fFile) + DescribeSide("data", fData) +
           DescribeMidpoints() + RenderTable();
  }

 private:
  // Nothing also when one side has no bins for lack of cases.
  std::optional<double> Stability() const {
    if (fFile.binWeights.size() != fData.binWeights.size()) return std::nullopt;
    return StabilityIndex(fFile.binWeights, fData.binWeights);
  }

  std::string Title() const {
    std::string title = "\n" + ElideText(fAttribute.name, kNameWidth);
    if (fTarget != nullptr) title += " by " + ElideText(fTarget->name, kNameWidth);
    return title + "\n";
  }

  std::string DescribeSide(const char* name, const AttributeBins& bins) const {
    std::string line =
        fmt::format("  {}: weight {} valid, {} missing", name, FormatNumber(bins.validWeight),
                    FormatNumber(bins.weightWithMissing - bins.validWeight));
    if (bins.minimum && bins.maximum && !fAttribute.IsCategorical()) {
      line +=
          fmt::format("; from {} to {}", FormatNumber(*bins.minimum), FormatNumber(*bins.maximum));
    }
    if (bins.modelEntropy && bins.informationGain) {
      line += fmt::format("; entropy {}, gain {} bits", MeasureCell(bins.modelEntropy),
                          MeasureCell(bins.informationGain));
    }
    if (fEvent) {
      line += fmt::format("; information value {}", MeasureCell(InformationValue(bins, *fEvent)));
    }
    return line + "\n";
  }

  std::string DescribeMidpoints() const {
    if (fModel.settings.algorithm == Algorithm::kSupervised) return {};
    const bool rightClosed = fModel.settings.rightClosed;
    std::string lines;
    for (const std::size_t cut : FindRoundedMidpoints(fFile, fRecounted, rightClosed)) {
      lines += fmt::format(
          "  cut point {} is a midpoint that rounded onto the value {} it: the bin file counts the "
          "weight {} of that value {} the cut point, apply and evaluate put it {}\n",
          FormatNumber(fFile.cutPoints[cut]), rightClosed ? "above" : "below",
          FormatNumber(fRecounted.cutWeights[cut]), rightClosed ? "above" : "below",
          rightClosed ? "below" : "above");
    }
    return lines;
  }

  bool HasClassColumns() const {
    return fTarget != nullptr && fTarget->GetCategoryCount() <= kMostClassColumns;
  }

  std::string RenderTable() const {
    TextTable table;
    table.AddColumn(fAttribute.IsCategorical() ? "categories" : "interval", Align::kLeft);
    AddPair(table, "weight");
    AddPair(table, "share");
    if (HasClassColumns()) {
      for (std::size_t code = 0; code < fTarget->GetCategoryCount(); ++code) {
        AddPair(table, ElideText(fTarget->GetLabel(code), kLabelWidth));
      }
    }
    if (fEvent) AddPair(table, "evidence");
    const auto fileEvidence = Evidence(fFile);
    const auto dataEvidence = Evidence(fData);
    for (std::size_t bin = 0; bin <= fFile.cutPoints.size(); ++bin) {
      table.AddRow(BinRow(bin, fileEvidence, dataEvidence));
    }
    return table.Render();
  }

  static void AddPair(TextTable& table, std::string name) {
    table.AddColumn(std::move(name), Align::kRight);
    table.AddColumn("data", Align::kRight);
  }

  using BinMeasures = std::vector<std::optional<double>>;

  BinMeasures Evidence(const AttributeBins& bins) const {
    return fEvent ? WeightsOfEvidence(bins, *fEvent) : BinMeasures();
  }

  std::vector<std::string> BinRow(std::size_t bin, const BinMeasures& fileEvidence,
                                  const BinMeasures& dataEvidence) const {
    const bool rightClosed = fModel.settings.rightClosed;
    const double fileWeight = WeightOf(fFile, bin);
    const double dataWeight = WeightOf(fData, bin);
    std::vector<std::string> cells = {
        ElideText(BinLabel(fAttribute, fFile.cutPoints, bin, rightClosed), kIntervalWidth),
        FormatNumber(fileWeight), FormatNumber(dataWeight),
        FormatShareOf(fileWeight, fFile.validWeight), FormatShareOf(dataWeight, fData.validWeight)};
    if (HasClassColumns()) {
      for (std::size_t code = 0; code < fTarget->GetCategoryCount(); ++code) {
        cells.push_back(FormatNumber(ClassWeightOf(fFile, bin, code)));
        cells.push_back(FormatNumber(ClassWeightOf(fData, bin, code)));
      }
    }
    if (fEvent) {
      for (const BinMeasures* side : {&fileEvidence, &dataEvidence}) {
        cells.push_back(MeasureCell(bin < side->size() ? (*side)[bin] : std::nullopt));
      }
    }
    return cells;
  }

  static double WeightOf(const AttributeBins& bins, std::size_t bin) {
    return bins.binWeights.empty() ? 0.0 : bins.binWeights[bin];
  }

  static double ClassWeightOf(const AttributeBins& bins, std::size_t bin, std::size_t code) {
    return bins.classWeights.empty() ? 0.0 : bins.classWeights[bin][code];
  }

  const BinModel& fModel;
  const RecountedBins& fRecounted;
  const AttributeBins& fFile;
  const AttributeBins& fData;
  const VariableInfo& fAttribute;
  const VariableInfo* const fTarget;
  std::optional<std::size_t> fEvent;  // of a target with two classes
};

std::string Heading(const BinModel& model, const VariableInfo* target, const Recount& recount,
                    std::string_view dataName) {
  std::string heading =
      fmt::format("Bins of {} on {}: {} records", PrintableText(model.source.name),
                  PrintableText(dataName), recount.recordCount - recount.dropped.GetTotal());
  if (target != nullptr) {
    heading += fmt::format(", target {}", ElideText(target->name, kNameWidth));
    if (target->GetCategoryCount() == 2) {
      heading += fmt::format("; evidence is above 0 where {} is more frequent than overall",
                             ElideText(target->GetLabel(EventCategory(*target)), kLabelWidth));
    }
  }
  return heading + "\n\n";
}

}  // namespace

void WriteEvaluationReport(const BinModel& model, const Recount& recount, std::string_view dataName,
                           const TextSink& write) {
  const VariableInfo* const target = model.GetTarget(recount.results.front().counts);
  std::vector<Comparison> comparisons;
  for (const RecountedBins& recounted : recount.results) comparisons.emplace_back(model, recounted);

  TextTable summary;
  summary.AddColumn("attribute", Align::kLeft);
  summary.AddColumn("bins", Align::kRight);
  summary.AddColumn("stability", Align::kRight);
  if (target != nullptr) {
    summary.AddColumn("gain", Align::kRight);
    summary.AddColumn("data", Align::kRight);
  }
  summary.AddColumn("counts", Align::kLeft);
  for (const Comparison& comparison : comparisons) summary.AddRow(comparison.SummaryRow());

  write(Heading(model, target, recount, dataName));
  write(summary.Render());
  for (const Comparison& comparison : comparisons) write(comparison.Render());
}

}  // namespace MCBinModel
