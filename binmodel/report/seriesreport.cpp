#include "binmodel/report/seriesreport.h"

#include <algorithm>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "binmodel/measure/binstatistics.h"
#include "binmodel/report/comparedbins.h"
#include "binmodel/report/datanames.h"
#include "binmodel/report/evaluationcells.h"
#include "binmodel/report/eventmeasures.h"
#include "binmodel/report/reportcells.h"
#include "binmodel/report/texttable.h"
#include "binmodel/text/displaytext.h"
#include "binmodel/text/number.h"

namespace MCBinModel {

namespace {

using Align = TextTable::Align;
using Measure = std::optional<double>;

constexpr std::size_t kDataNameWidth = 20;   // at the head of a column
constexpr std::size_t kWholeNameWidth = 60;  // where a line is about the data

class Series {
 public:
  Series(const BinModel& model, const std::vector<NamedRecount>& data, const ShownResults& shown,
         ReportWriter& writer)
      : fModel(model),
        fData(data),
        fShown(shown),
        fWriter(writer),
        fNames(ShortDataNames(data, kDataNameWidth)) {}

  void Write() {
    WriteSizes();
    if (fShown.withCutPoints > 0) WriteSummary();
    for (std::size_t i = 0; i < fShown.tables; ++i) WriteResult(fShown.order[i]);
    if (fShown.withCutPoints == fShown.order.size()) return;
    fWriter.AddHeading("Without cut points: stability");
    fWriter.AddTable(MeasureTable(fShown.withCutPoints, fShown.order.size(), false, Stability));
  }

 private:
  static Measure Stability(const ComparedBins& bins) {
    return StabilityOfBins(bins.file, bins.data);
  }

  // Of results that get no table, only the stability is shown, unless nothing gets one.
  void WriteSummary() {
    const std::size_t all = fShown.withCutPoints;
    const std::size_t some = fShown.tables > 0 ? fShown.tables : all;
    WriteMeasures("Stability", all, false, Stability);
    if (std::any_of(fData.begin(), fData.end(), [&](const NamedRecount& data) {
          return AnyHasMissing(fModel, data, fShown.order);
        })) {
      WriteMeasures("Stability without missing", all, false,
                    [](const ComparedBins& bins) { return bins.StabilityWithoutMissing(); });
    }
    if (!HasTargetSomewhere()) return;
    WriteMeasures("Gain in bits", some, true,
                  [](const ComparedBins& bins) { return bins.data.informationGain; });
    if (!HasTwoClasses(fModel, FirstBins())) return;
    WriteMeasures("Gini", some, true, [this](const ComparedBins& bins) {
      return MeasureEvent(fModel, bins.file, bins.data).gini;
    });
    WriteMeasures("Kolmogorov-Smirnov", some, true, [this](const ComparedBins& bins) {
      return MeasureEvent(fModel, bins.file, bins.data).kolmogorovSmirnov;
    });
  }

  void WriteResult(std::size_t result) {
    const std::string title = ResultTitle(fModel, FirstBins(result));
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
    const std::vector<std::string> names = ShortDataNames(fData, kWholeNameWidth);
    TextTable table;
    table.AddColumn("data", Align::kLeft);
    table.AddColumn("records", Align::kRight);
    table.AddColumn("dropped", Align::kRight);
    for (std::size_t i = 0; i < fData.size(); ++i) {
      const Recount& recount = fData[i].recount;
      table.AddRow({names[i], std::to_string(UsedRecords(recount)),
                    std::to_string(recount.dropped.GetTotal())});
    }
    fWriter.AddTable(table);
  }

  template <typename MeasureOf>
  void WriteMeasures(const char* name, std::size_t count, bool withFile, MeasureOf measureOf) {
    fWriter.AddHeading(name);
    fWriter.AddTable(MeasureTable(0, count, withFile, measureOf));
  }

  // A line for the results from `begin` to `end` of those shown. Of the bin file itself only where
  // it has a measure of its own.
  template <typename MeasureOf>
  TextTable MeasureTable(std::size_t begin, std::size_t end, bool withFile, MeasureOf measureOf) {
    TextTable table;
    table.AddColumn("attribute", Align::kLeft);
    if (withFile) table.AddColumn("bin file", Align::kRight);
    for (const std::string& data : fNames) table.AddColumn(data, Align::kRight);
    for (std::size_t i = begin; i < end; ++i) {
      const std::size_t result = fShown.order[i];
      const AttributeBins& file = FirstBins(result);
      std::vector<std::string> cells = {ElideText(fModel.GetAttribute(file).name, kNameWidth)};
      if (withFile) {
        RecountedBins itself;
        itself.result = fData.front().recount.results[result].result;
        itself.counts = file;
        cells.push_back(MeasureCell(measureOf(ComparedBins(fModel, itself))));
      }
      for (const NamedRecount& named : fData) {
        cells.push_back(
            MeasureCell(measureOf(ComparedBins(fModel, named.recount.results[result]))));
      }
      table.AddRow(std::move(cells));
    }
    return table;
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
    const std::vector<std::string> names = BinNames(fModel, file);
    for (std::size_t bin = 0; bin < names.size() - (hasMissing ? 0 : 1); ++bin) {
      std::vector<std::string> cells = {names[bin], cellOf(file, bin)};
      for (const ComparedBins& bins : compared) cells.push_back(cellOf(bins.data, bin));
      table.AddRow(std::move(cells));
    }
    fWriter.AddHeading(heading);
    fWriter.AddTable(table);
  }

  const BinModel& fModel;
  const std::vector<NamedRecount>& fData;
  const ShownResults& fShown;
  ReportWriter& fWriter;
  const std::vector<std::string> fNames;
};

}  // namespace

void WriteSeries(const BinModel& model, const std::vector<NamedRecount>& data,
                 const ShownResults& shown, ReportWriter& writer) {
  Series(model, data, shown, writer).Write();
}

}  // namespace MCBinModel
