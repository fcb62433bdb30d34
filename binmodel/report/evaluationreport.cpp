#include <fmt/format.h>

#include <algorithm>
#include <cmath>
#include <functional>
#include <optional>
#include <set>
#include <utility>
#include <vector>

#include "binmodel/apply/bincounter.h"
#include "binmodel/apply/binvalues.h"
#include "binmodel/measure/binstatistics.h"
#include "binmodel/measure/evidence.h"
#include "binmodel/model/binlookup.h"
#include "binmodel/report/binreport.h"
#include "binmodel/report/comparedbins.h"
#include "binmodel/report/eventmeasures.h"
#include "binmodel/report/numbertext.h"
#include "binmodel/report/reportcells.h"
#include "binmodel/report/reportwriter.h"
#include "binmodel/report/resultrecords.h"
#include "binmodel/report/texttable.h"
#include "binmodel/text/displaytext.h"
#include "binmodel/text/number.h"

namespace MCBinModel {

namespace {

using Align = TextTable::Align;
using Measure = std::optional<double>;

constexpr std::size_t kIntervalWidth = 60;
constexpr std::size_t kDataNameWidth = 20;

// The name of a bin in a table for people.
std::string BinCell(const BinModel& model, const AttributeBins& bins, std::size_t bin) {
  const VariableInfo& attribute = model.GetAttribute(bins);
  const bool rightClosed = model.settings.rightClosed;
  if (bin > bins.cutPoints.size()) return kMissingLabel;
  if (!attribute.IsCategorical()) return NumberText(bins).OfInterval(bin, rightClosed);
  return ElideText(BinLabel(attribute, bins.cutPoints, bin, rightClosed), kIntervalWidth);
}

bool IsInfiniteIndex(const Measure& measure) { return measure && std::isinf(*measure); }

std::string TitleOf(const BinModel& model, const AttributeBins& bins) {
  const VariableInfo* const target = model.GetTarget(bins);
  std::string title = ElideText(model.GetAttribute(bins).name, kNameWidth);
  return target == nullptr ? title : title + " by " + ElideText(target->name, kNameWidth);
}

// Whether the stability index of one of the first results is not the one without missing cases.
bool AnyHasMissing(const BinModel& model, const NamedRecount& data, std::size_t count) {
  const auto first = data.recount.results.begin();
  return std::any_of(
      first, first + static_cast<std::ptrdiff_t>(count),
      [&](const RecountedBins& recounted) { return ComparedBins(model, recounted).HasMissing(); });
}

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
    cells.emplace_back(HasSameCounts(fFile, fData) ? "equal" : "differ");
    return cells;
  }

  void Write(ReportWriter& writer) const {
    writer.AddHeading(TitleOf(fModel, fFile));
    writer.AddFact(DescribeSide("bin file", fFile, fFile, fFileEvidence));
    writer.AddFact(DescribeSide("data", fRecounted.counts, fData, fDataEvidence));
    AddStability(writer);
    AddMidpoints(writer);
    writer.AddTable(MakeTable());
  }

 private:
  // `counted` may know more than `bins`, which are compared.
  std::string DescribeSide(const char* name, const AttributeBins& counted,
                           const AttributeBins& bins,
                           const std::optional<Evidence>& evidence) const {
    std::string line = fmt::format("{}: {}", name, WeightFact(counted));
    if (bins.minimum && bins.maximum && !fAttribute.IsCategorical()) {
      const NumberText numbers(fFile);
      line += fmt::format("; from {} to {}", numbers.OfValue(*bins.minimum),
                          numbers.OfValue(*bins.maximum));
    }
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
          FormatNumber(fFile.cutPoints[cut]), rightClosed ? "above" : "below",
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
    for (std::size_t bin = 0; bin <= fFile.cutPoints.size(); ++bin) table.AddRow(BinRow(bin));
    if (fBins.HasMissing()) table.AddRow(MissingRow());
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

  std::vector<std::string> BinRow(std::size_t bin) const {
    return Row(BinCell(fModel, fFile, bin), SideOf(fFile, fFileEvidence, bin),
               SideOf(fData, fDataEvidence, bin));
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

std::string TargetFact(const BinModel& model, const VariableInfo* target) {
  if (target == nullptr) return {};
  std::string fact = ", target " + ElideText(target->name, kNameWidth);
  const std::string event = EventFact(model, *target);
  return event.empty() ? fact : fact + " (" + event + ")";
}

std::uint64_t UsedRecords(const Recount& recount) {
  return recount.recordCount - recount.dropped.GetTotal();
}

void WriteComparison(const BinModel& model, const NamedRecount& data, std::size_t count,
                     bool summaryOnly, ReportWriter& writer, const TextSink& write) {
  const std::vector<RecountedBins>& results = data.recount.results;
  const AttributeBins& first = results.front().counts;
  const bool hasTarget = first.target.has_value();
  TextTable summary;
  summary.AddColumn("attribute", Align::kLeft);
  summary.AddColumn("bins", Align::kRight);
  summary.AddColumn("stability", Align::kRight);
  const bool withoutMissing = AnyHasMissing(model, data, count);
  if (withoutMissing) summary.AddColumn("without missing", Align::kRight);
  std::vector<const char*> measures;
  if (hasTarget) measures.push_back("gain");
  if (HasTwoClasses(model, first)) measures.insert(measures.end(), {"Gini", "KS"});
  for (const char* measure : measures) {
    summary.AddColumn(measure, Align::kRight);
    summary.AddColumn("data", Align::kRight);
  }
  summary.AddColumn("counts", Align::kLeft);
  for (std::size_t i = 0; i < count; ++i) {
    summary.AddRow(Comparison(model, results[i]).SummaryRow(withoutMissing));
  }

  writer.AddTitle(fmt::format("Bins of {} on {}: {} records{}", PrintableText(model.source.name),
                              PrintableText(data.name), UsedRecords(data.recount),
                              TargetFact(model, model.GetTarget(first))));
  write("\n");
  writer.AddTable(summary);
  for (std::size_t i = 0; i < count && !summaryOnly; ++i) {
    Comparison(model, results[i]).Write(writer);
  }
}

// Several data: a column for each, the bin file's first.
class Series {
 public:
  Series(const BinModel& model, const std::vector<NamedRecount>& data, ReportWriter& writer)
      : fModel(model), fData(data), fWriter(writer), fNames(ShortNames(data)) {}

  void WriteSummary(std::size_t count) {
    WriteSizes();
    WriteMeasures(count, "Stability", false,
                  [](const ComparedBins& bins) { return StabilityOfBins(bins.file, bins.data); });
    if (std::any_of(fData.begin(), fData.end(),
                    [&](const NamedRecount& data) { return AnyHasMissing(fModel, data, count); })) {
      WriteMeasures(count, "Stability without missing", false,
                    [](const ComparedBins& bins) { return bins.StabilityWithoutMissing(); });
    }
    if (!HasTargetSomewhere()) return;
    WriteMeasures(count, "Gain in bits", true,
                  [](const ComparedBins& bins) { return bins.data.informationGain; });
    if (!HasTwoClasses(fModel, FirstBins())) return;
    WriteMeasures(count, "Gini", true, [this](const ComparedBins& bins) {
      return MeasureEvent(fModel, bins.file, bins.data).gini;
    });
    WriteMeasures(count, "Kolmogorov-Smirnov", true, [this](const ComparedBins& bins) {
      return MeasureEvent(fModel, bins.file, bins.data).kolmogorovSmirnov;
    });
  }

  void WriteResult(std::size_t result) {
    const std::string title = TitleOf(fModel, FirstBins(result));
    WriteBins(result, title + ": share", [](const AttributeBins& bins, std::size_t bin) {
      return FormatShareOf(WeightOf(bins, bin), CountedWeight(bins));
    });
    if (!HasTargetSomewhere() || !HasTwoClasses(fModel, FirstBins(result))) return;
    const std::size_t event = fModel.GetTarget(FirstBins(result))->GetEvent();
    WriteBins(result, title + ": event rate",
              [event](const AttributeBins& bins, std::size_t bin) -> std::string {
                const std::vector<double>* const classes = ClassesOf(bins, bin);
                if (classes == nullptr) return "-";
                return FormatShareOf((*classes)[event], WeightOf(bins, bin));
              });
  }

 private:
  // The names without what leads to the files, unless two would be the same.
  static std::vector<std::string> ShortNames(const std::vector<NamedRecount>& data) {
    std::set<std::string> different;
    std::vector<std::string> names;
    for (const NamedRecount& named : data) {
      names.push_back(named.name.substr(named.name.find_last_of('/') + 1));
      different.insert(names.back());
    }
    for (std::size_t i = 0; i < names.size(); ++i) {
      names[i] =
          ElideText(different.size() < names.size() ? data[i].name : names[i], kDataNameWidth);
    }
    return names;
  }

  const AttributeBins& FirstBins(std::size_t result = 0) const {
    return fModel.results[fData.front().recount.results[result].result];
  }

  bool HasTargetSomewhere() const {
    return std::any_of(fData.begin(), fData.end(), [](const NamedRecount& named) {
      return named.recount.results.front().counts.target.has_value();
    });
  }

  static double WeightOf(const AttributeBins& bins, std::size_t bin) {
    if (bin > bins.cutPoints.size()) return bins.missing ? bins.missing->weight : 0.0;
    return bin < bins.binWeights.size() ? bins.binWeights[bin] : 0.0;
  }

  static const std::vector<double>* ClassesOf(const AttributeBins& bins, std::size_t bin) {
    if (!bins.target) return nullptr;
    if (bin > bins.cutPoints.size()) return bins.missing ? &bins.missing->classWeights : nullptr;
    return bin < bins.classWeights.size() ? &bins.classWeights[bin] : nullptr;
  }

  void WriteSizes() {
    TextTable table;
    table.AddColumn("data", Align::kLeft);
    table.AddColumn("records", Align::kRight);
    table.AddColumn("dropped", Align::kRight);
    for (std::size_t i = 0; i < fData.size(); ++i) {
      const Recount& recount = fData[i].recount;
      table.AddRow({fNames[i], std::to_string(UsedRecords(recount)),
                    std::to_string(recount.dropped.GetTotal())});
    }
    fWriter.AddTable(table);
  }

  // Of the bin file itself only where it has one of its own.
  template <typename MeasureOf>
  void WriteMeasures(std::size_t count, const char* name, bool withFile, MeasureOf measureOf) {
    TextTable table;
    table.AddColumn("attribute", Align::kLeft);
    if (withFile) table.AddColumn("bin file", Align::kRight);
    for (const std::string& data : fNames) table.AddColumn(data, Align::kRight);
    for (std::size_t i = 0; i < count; ++i) {
      std::vector<std::string> cells = {
          ElideText(fModel.GetAttribute(FirstBins(i)).name, kNameWidth)};
      if (withFile) {
        const AttributeBins& file = FirstBins(i);
        RecountedBins itself;
        itself.result = fData.front().recount.results[i].result;
        itself.counts = file;
        cells.push_back(MeasureCell(measureOf(ComparedBins(fModel, itself))));
      }
      for (const NamedRecount& named : fData) {
        cells.push_back(MeasureCell(measureOf(ComparedBins(fModel, named.recount.results[i]))));
      }
      table.AddRow(std::move(cells));
    }
    fWriter.AddHeading(name);
    fWriter.AddTable(table);
  }

  template <typename CellOf>
  void WriteBins(std::size_t result, const std::string& heading, CellOf cellOf) {
    const AttributeBins& file = FirstBins(result);
    std::vector<ComparedBins> compared;
    for (const NamedRecount& named : fData) {
      compared.emplace_back(fModel, named.recount.results[result]);
    }
    const bool hasMissing = std::any_of(compared.begin(), compared.end(),
                                        [](const auto& bins) { return bins.HasMissing(); });
    TextTable table;
    table.AddColumn(fModel.GetAttribute(file).IsCategorical() ? "categories" : "interval",
                    Align::kLeft);
    table.AddColumn("bin file", Align::kRight);
    for (const std::string& data : fNames) table.AddColumn(data, Align::kRight);
    for (std::size_t bin = 0; bin < file.cutPoints.size() + (hasMissing ? 2 : 1); ++bin) {
      std::vector<std::string> cells = {BinCell(fModel, file, bin), cellOf(file, bin)};
      for (const ComparedBins& bins : compared) cells.push_back(cellOf(bins.data, bin));
      table.AddRow(std::move(cells));
    }
    fWriter.AddHeading(heading);
    fWriter.AddTable(table);
  }

  const BinModel& fModel;
  const std::vector<NamedRecount>& fData;
  ReportWriter& fWriter;
  const std::vector<std::string> fNames;
};

}  // namespace

void WriteEvaluationReport(const BinModel& model, const Recount& recount, std::string_view dataName,
                           const TextSink& write) {
  WriteEvaluationReport(model, {{std::string(dataName), recount}}, {}, write);
}

void WriteEvaluationReport(const BinModel& model, const std::vector<NamedRecount>& data,
                           const TextStyle& style, const TextSink& write) {
  const NamedRecount& first = data.front();
  const std::size_t all = first.recount.results.size();
  const std::size_t count = style.top > 0 ? std::min(style.top, all) : all;
  if (style.format != TableFormat::kText && style.format != TableFormat::kMarkdown) {
    const DataTable table = style.summaryOnly ? ListRecountedResults(model, data, count)
                                              : ListRecountedBins(model, data, count);
    return table.Write(style.format, write);
  }
  ReportWriter writer(style.format, write);
  if (data.size() == 1) {
    return WriteComparison(model, first, count, style.summaryOnly, writer, write);
  }
  const VariableInfo* const target =
      model.GetTarget(model.results[first.recount.results.front().result]);
  writer.AddTitle(fmt::format("Bins of {} on {} files{}", PrintableText(model.source.name),
                              data.size(), TargetFact(model, target)));
  write("\n");
  Series series(model, data, writer);
  series.WriteSummary(count);
  for (std::size_t i = 0; i < count && !style.summaryOnly; ++i) series.WriteResult(i);
}

}  // namespace MCBinModel
