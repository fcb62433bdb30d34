#include <fmt/format.h>

#include <optional>
#include <utility>
#include <vector>

#include "binmodel/apply/bincounter.h"
#include "binmodel/apply/binvalues.h"
#include "binmodel/measure/binstatistics.h"
#include "binmodel/measure/evidence.h"
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
        fData(ComparableCounts(recounted.counts, fFile)),
        fAttribute(model.GetAttribute(fFile)),
        fTarget(model.GetTarget(fFile)) {
    if (fTarget == nullptr || fTarget->GetCategoryCount() != 2) return;
    fFileEvidence = MeasureEvidence(model, fFile);
    fDataEvidence = MeasureEvidence(model, fData);
  }

  std::vector<std::string> SummaryRow() const {
    std::vector<std::string> cells = {ElideText(fAttribute.name, kNameWidth),
                                      std::to_string(fFile.cutPoints.size() + 1),
                                      MeasureCell(StabilityOfBins(fFile, fData))};
    if (fTarget != nullptr) {
      cells.push_back(MeasureCell(fFile.informationGain));
      cells.push_back(MeasureCell(fData.informationGain));
    }
    cells.emplace_back(HasSameCounts(fFile, fData) ? "equal" : "differ");
    return cells;
  }

  std::string Render() const {
    return Title() + DescribeSide("bin file", fFile, fFile, fFileEvidence) +
           DescribeSide("data", fRecounted.counts, fData, fDataEvidence) + DescribeStability() +
           DescribeMidpoints() + RenderTable();
  }

 private:
  // Without the missing cases where the bin file has not counted its own.
  static AttributeBins ComparableCounts(AttributeBins counts, const AttributeBins& file) {
    if (!file.missing) counts.missing.reset();
    return counts;
  }

  std::string Title() const {
    std::string title = "\n" + ElideText(fAttribute.name, kNameWidth);
    if (fTarget != nullptr) title += " by " + ElideText(fTarget->name, kNameWidth);
    return title + "\n";
  }

  // `counted` may know more than `bins`, which are compared.
  std::string DescribeSide(const char* name, const AttributeBins& counted,
                           const AttributeBins& bins,
                           const std::optional<Evidence>& evidence) const {
    std::string line = fmt::format("  {}: {}", name, WeightFact(counted));
    if (bins.minimum && bins.maximum && !fAttribute.IsCategorical()) {
      line +=
          fmt::format("; from {} to {}", FormatNumber(*bins.minimum), FormatNumber(*bins.maximum));
    }
    if (bins.modelEntropy && bins.informationGain) {
      line += fmt::format("; entropy {}, gain {} bits", MeasureCell(bins.modelEntropy),
                          MeasureCell(bins.informationGain));
    }
    if (evidence) line += "; " + InformationValueFact(bins, *evidence, MeasureCell);
    return line + "\n";
  }

  bool HasMissing() const {
    return FindMissingBin(fFile) != nullptr || FindMissingBin(fData) != nullptr;
  }

  std::string DescribeStability() const {
    if (!fFile.missing) {
      const double missing = fRecounted.counts.missing ? fRecounted.counts.missing->weight : 0.0;
      const bool lacksMissing = missing > 0.0 || fFile.weightWithMissing > fFile.validWeight;
      return lacksMissing
                 ? "  the bin file has not counted its missing cases as a bin, so no measure "
                   "knows them\n"
                 : "";
    }
    if (!HasMissing() || fFile.binWeights.size() != fData.binWeights.size()) return {};
    return fmt::format("  stability {} ({} without missing)\n",
                       MeasureCell(StabilityOfBins(fFile, fData)),
                       MeasureCell(StabilityIndex(fFile.binWeights, fData.binWeights)));
  }

  std::string DescribeMidpoints() const {
    if (fTarget != nullptr) return {};  // whose bins hold the cases that their cut points say
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
    if (fFileEvidence) AddPair(table, "evidence");
    for (std::size_t bin = 0; bin <= fFile.cutPoints.size(); ++bin) table.AddRow(BinRow(bin));
    if (HasMissing()) table.AddRow(MissingRow());
    return table.Render();
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

  std::vector<std::string> BinRow(std::size_t bin) const {
    return Row(ElideText(BinLabel(fAttribute, fFile.cutPoints, bin, fModel.settings.rightClosed),
                         kIntervalWidth),
               SideOf(fFile, fFileEvidence, bin), SideOf(fData, fDataEvidence, bin));
  }

  std::vector<std::string> MissingRow() const {
    return Row(kMissingLabel, MissingSideOf(fFile, fFileEvidence),
               MissingSideOf(fData, fDataEvidence));
  }

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
    if (HasClassColumns()) {
      for (std::size_t code = 0; code < fTarget->GetCategoryCount(); ++code) {
        for (const Side* side : {&file, &data}) {
          const bool has = code < side->classWeights.size();
          cells.push_back(FormatNumber(has ? side->classWeights[code] : 0.0));
        }
      }
    }
    if (fFileEvidence) {
      cells.push_back(MeasureCell(file.evidence));
      cells.push_back(MeasureCell(data.evidence));
    }
    return cells;
  }

  const BinModel& fModel;
  const RecountedBins& fRecounted;
  const AttributeBins& fFile;
  const AttributeBins fData;
  const VariableInfo& fAttribute;
  const VariableInfo* const fTarget;
  std::optional<Evidence> fFileEvidence;  // of a target with two classes
  std::optional<Evidence> fDataEvidence;
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
      const double adjustment = model.settings.evidenceAdjustment;
      if (adjustment > 0.0) {
        heading += fmt::format(" ({} added to both classes of each bin)", FormatNumber(adjustment));
      }
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
