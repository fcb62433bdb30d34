#include "binmodel/report/resultrecords.h"

#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "binmodel/apply/binvalues.h"
#include "binmodel/measure/binstatistics.h"
#include "binmodel/measure/evidence.h"
#include "binmodel/model/binlookup.h"
#include "binmodel/report/comparedbins.h"
#include "binmodel/report/eventmeasures.h"
#include "binmodel/report/reportcells.h"

namespace MCBinModel {

namespace {

using Field = DataTable::Field;

std::optional<double> ShareOf(double part, double whole) {
  return whole > 0.0 ? std::optional<double>(part / whole) : std::nullopt;
}

// Values of an attribute: numbers, or times as dates.
Field ValueField(const VariableInfo& attribute, double value) {
  return attribute.isTime ? Field(attribute.FormatValue(value)) : Field(value);
}

Field ValueField(const VariableInfo& attribute, const std::optional<double>& value) {
  return value ? ValueField(attribute, *value) : Field();
}

Field ValueField(const VariableInfo& attribute, const std::vector<double>& values) {
  if (!attribute.isTime) return Field(values);
  std::vector<std::string> texts;
  for (const double value : values) texts.push_back(attribute.FormatValue(value));
  return Field(std::move(texts));
}

void SetNames(DataTable& table, const BinModel& model, const AttributeBins& bins) {
  table.Set("attribute", Field(model.GetAttribute(bins).name));
  if (!model.targets.empty()) {
    const VariableInfo* const target = model.GetTarget(bins);
    table.Set("target", target == nullptr ? Field() : Field(target->name));
  }
}

void SetMeasures(DataTable& table, const BinModel& model, const AttributeBins& ranking,
                 const AttributeBins& bins, const std::string& prefix) {
  if (!bins.target) return;
  table.Set(prefix + "gain", bins.informationGain);
  if (!HasTwoClasses(model, bins)) return;
  const EventMeasures measures = MeasureEvent(model, ranking, bins);
  table.Set(prefix + "information_value", measures.informationValue);
  table.Set(prefix + "auc", measures.areaUnderCurve);
  table.Set(prefix + "gini", measures.gini);
  table.Set(prefix + "ks", measures.kolmogorovSmirnov);
}

// One bin as a reader of records sees it; the missing cases are the one after the last.
struct BinCells {
  double weight = 0.0;
  const std::vector<double>* classWeights = nullptr;  // null where there are none
  std::optional<double> evidence = std::nullopt;
  std::optional<double> value = std::nullopt;
};

BinCells CellsOf(const AttributeBins& bins, const std::optional<Evidence>& evidence,
                 std::size_t bin) {
  BinCells cells;
  const bool isMissing = bin > bins.cutPoints.size();
  if (isMissing && bins.missing) {
    cells.weight = bins.missing->weight;
    if (bins.target) cells.classWeights = &bins.missing->classWeights;
    if (evidence) {
      cells.evidence = evidence->missingWeight;
      cells.value = evidence->missingValue;
    }
  }
  if (isMissing || bin >= bins.binWeights.size()) return cells;
  cells.weight = bins.binWeights[bin];
  if (bin < bins.classWeights.size()) cells.classWeights = &bins.classWeights[bin];
  if (evidence) {
    cells.evidence = evidence->weights[bin];
    cells.value = evidence->values[bin];
  }
  return cells;
}

void SetPlace(DataTable& table, const BinModel& model, const AttributeBins& bins, std::size_t bin) {
  const VariableInfo& attribute = model.GetAttribute(bins);
  const std::vector<double>& cuts = bins.cutPoints;
  const bool isMissing = bin > cuts.size();
  table.Set("bin", isMissing ? Field() : Field(static_cast<double>(bin)));
  table.Set("label", isMissing ? Field(kMissingLabel)
                               : Field(BinLabel(attribute, cuts, bin, model.settings.rightClosed)));
  table.Set("low", isMissing || bin == 0 ? Field() : ValueField(attribute, cuts[bin - 1]));
  table.Set("high", isMissing || bin == cuts.size() ? Field() : ValueField(attribute, cuts[bin]));
}

void SetWeights(DataTable& table, const BinModel& model, const AttributeBins& bins,
                const BinCells& cells, const std::string& prefix) {
  table.Set(prefix + "weight", Field(cells.weight));
  table.Set(prefix + "share", ShareOf(cells.weight, CountedWeight(bins)));
  if (!HasTwoClasses(model, bins)) return;
  const std::size_t event = model.GetTarget(bins)->GetEvent();
  table.Set(prefix + "event_rate", cells.classWeights == nullptr
                                       ? std::nullopt
                                       : ShareOf((*cells.classWeights)[event], cells.weight));
  table.Set(prefix + "weight_of_evidence", cells.evidence);
  table.Set(prefix + "information_value", cells.value);
}

void SetClasses(DataTable& table, const BinModel& model, const AttributeBins& bins,
                const BinCells& cells, const std::string& prefix) {
  if (!bins.target) return;
  const VariableInfo& target = *model.GetTarget(bins);
  for (const bool shares : {false, true}) {
    for (std::size_t code = 0; code < target.GetCategoryCount(); ++code) {
      const bool has = cells.classWeights != nullptr && code < cells.classWeights->size();
      const double weight = has ? (*cells.classWeights)[code] : 0.0;
      table.Set(prefix + (shares ? "share:" : "weight:") + target.GetLabel(code),
                shares ? ShareOf(weight, cells.weight) : std::optional<double>(weight));
    }
  }
}

std::optional<Evidence> EvidenceOf(const BinModel& model, const AttributeBins& bins) {
  if (!HasTwoClasses(model, bins) || bins.binWeights.empty()) return std::nullopt;
  return MeasureEvidence(model, bins);
}

}  // namespace

DataTable ListResults(const BinModel& model, const std::vector<std::size_t>& results) {
  DataTable table;
  for (const std::size_t index : results) {
    const AttributeBins& bins = model.results[index];
    const VariableInfo& attribute = model.GetAttribute(bins);
    const bool hasBins = !bins.binWeights.empty();
    table.AddRecord();
    SetNames(table, model, bins);
    SetMeasures(table, model, bins, bins, "");
    if (!bins.target) {
      table.Set("deviation",
                hasBins ? std::optional<double>(LargestShareDeviation(bins, model.settings.bins))
                        : std::nullopt);
    }
    table.Set("bins", Field(static_cast<double>(bins.binWeights.size())));
    table.Set("cut_points", ValueField(attribute, bins.cutPoints));
    table.Set("valid_weight", Field(bins.validWeight));
    table.Set("missing_weight", bins.missing ? Field(bins.missing->weight) : Field());
    table.Set("distinct_values", KnowsDistinctValues(bins)
                                     ? Field(static_cast<double>(bins.distinctValues))
                                     : Field());
    table.Set("minimum", ValueField(attribute, bins.minimum));
    table.Set("maximum", ValueField(attribute, bins.maximum));
    table.Set("status", Field(StatusCell(bins)));
  }
  return table;
}

DataTable ListBins(const BinModel& model, const std::vector<std::size_t>& results) {
  DataTable table;
  for (const std::size_t index : results) {
    const AttributeBins& bins = model.results[index];
    const std::optional<Evidence> evidence = EvidenceOf(model, bins);
    const std::size_t binCount = bins.binWeights.size() + (FindMissingBin(bins) != nullptr ? 1 : 0);
    for (std::size_t bin = 0; bin < binCount; ++bin) {
      table.AddRecord();
      SetNames(table, model, bins);
      SetPlace(table, model, bins, bin);
      const BinCells cells = CellsOf(bins, evidence, bin);
      SetWeights(table, model, bins, cells, "");
      SetClasses(table, model, bins, cells, "");
    }
  }
  return table;
}

DataTable ListRecountedResults(const BinModel& model, const std::vector<NamedRecount>& data,
                               const std::vector<std::size_t>& order) {
  DataTable table;
  for (const std::size_t i : order) {
    for (const NamedRecount& named : data) {
      const ComparedBins compared(model, named.recount.results[i]);
      table.AddRecord();
      table.Set("data", Field(named.name));
      SetNames(table, model, compared.file);
      table.Set("bins", Field(static_cast<double>(compared.file.cutPoints.size() + 1)));
      table.Set("stability", StabilityOfBins(compared.file, compared.data));
      table.Set("stability_without_missing", compared.StabilityWithoutMissing());
      SetMeasures(table, model, compared.file, compared.file, "");
      SetMeasures(table, model, compared.file, compared.data, "data_");
      table.Set("counts", Field(HasSameCounts(compared.file, compared.data) ? "equal" : "differ"));
    }
  }
  return table;
}

DataTable ListRecountedBins(const BinModel& model, const std::vector<NamedRecount>& data,
                            const std::vector<std::size_t>& order) {
  DataTable table;
  for (const std::size_t i : order) {
    for (const NamedRecount& named : data) {
      const ComparedBins compared(model, named.recount.results[i]);
      const std::optional<Evidence> fileEvidence = EvidenceOf(model, compared.file);
      const std::optional<Evidence> dataEvidence = EvidenceOf(model, compared.data);
      const std::size_t binCount = compared.file.cutPoints.size() + (compared.HasMissing() ? 2 : 1);
      for (std::size_t bin = 0; bin < binCount; ++bin) {
        table.AddRecord();
        table.Set("data", Field(named.name));
        SetNames(table, model, compared.file);
        SetPlace(table, model, compared.file, bin);
        const BinCells fileCells = CellsOf(compared.file, fileEvidence, bin);
        const BinCells dataCells = CellsOf(compared.data, dataEvidence, bin);
        SetWeights(table, model, compared.file, fileCells, "");
        SetWeights(table, model, compared.data, dataCells, "data_");
        SetClasses(table, model, compared.file, fileCells, "");
        SetClasses(table, model, compared.data, dataCells, "data_");
      }
    }
  }
  return table;
}

}  // namespace MCBinModel
