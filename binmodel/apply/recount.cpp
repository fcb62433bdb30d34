#include "binmodel/apply/recount.h"

#include <algorithm>
#include <map>
#include <memory>
#include <optional>
#include <utility>

#include "binmodel/apply/fieldcoder.h"
#include "binmodel/measure/binstatistics.h"
#include "binmodel/model/binlookup.h"

namespace MCBinModel {

namespace {

void AddToRange(AttributeBins& counts, double value) {
  counts.minimum = std::min(counts.minimum.value_or(value), value);
  counts.maximum = std::max(counts.maximum.value_or(value), value);
}

class Counter {
 public:
  Counter(const BinModel& model, const std::vector<std::size_t>& results,
          const MCBin::ColumnNames& names, const MCBin::MissingTexts& missingTexts)
      : fModel(model), fNames(names), fMissingTexts(missingTexts) {
    for (const std::size_t index : results) AddResult(index);
  }

  void Add(const MCBin::CsvReader& reader, double weight) {
    for (Column& column : fColumns) column.value = column.coder.Code(reader);
    for (Row& row : fRows) AddCase(row, weight);
  }

  Recount Finish() {
    Recount recount;
    for (Row& row : fRows) {
      RecountedBins& bins = row.bins;
      if (bins.counts.validWeight == 0.0) {
        bins.counts.binWeights.clear();
        bins.counts.classWeights.clear();
      } else if (bins.counts.target) {
        bins.counts.modelEntropy = ModelEntropy(bins.counts);
        bins.counts.informationGain = InformationGain(bins.counts);
      }
      recount.results.push_back(std::move(bins));
    }
    for (const Column& column : fColumns) {
      std::optional<std::string> unknown = column.coder.DescribeUnknown();
      if (unknown) recount.notes.push_back(*std::move(unknown));
    }
    return recount;
  }

 private:
  struct Column {
    FieldCoder coder;
    std::optional<double> value;  // in the current record
  };

  struct Row {
    RecountedBins bins;
    std::size_t attribute;  // in fColumns, also the next
    std::optional<std::size_t> target;
  };

  // One column for each variable, however many results use it.
  std::size_t ColumnOf(const VariableInfo& variable) {
    const auto [known, isNew] = fColumnOf.emplace(variable.name, fColumns.size());
    if (isNew) {
      fColumns.push_back(
          {FieldCoder(variable, fNames.Find(variable.name), fMissingTexts), std::nullopt});
    }
    return known->second;
  }

  void AddResult(std::size_t index) {
    const AttributeBins& file = fModel.results[index];
    const VariableInfo* const target = fModel.GetTarget(file);
    const std::size_t binCount = file.cutPoints.size() + 1;
    Row row{};
    row.bins.result = index;
    row.bins.cutWeights.assign(file.cutPoints.size(), 0.0);
    row.bins.counts.attribute = file.attribute;
    row.bins.counts.target = file.target;
    row.bins.counts.cutPoints = file.cutPoints;
    row.bins.counts.binWeights.assign(binCount, 0.0);
    row.attribute = ColumnOf(fModel.GetAttribute(file));
    if (target != nullptr) {
      row.target = ColumnOf(*target);
      row.bins.counts.classWeights.assign(binCount,
                                          std::vector<double>(target->GetCategoryCount(), 0.0));
    }
    fRows.push_back(std::move(row));
  }

  void AddCase(Row& row, double weight) {
    AttributeBins& counts = row.bins.counts;
    counts.weightWithMissing += weight;
    const std::optional<double> value = fColumns[row.attribute].value;
    const std::optional<double> category = row.target ? fColumns[*row.target].value : 0.0;
    if (!value || !category) return;

    const bool rightClosed = fModel.settings.rightClosed;
    const std::size_t bin = FindBin(counts.cutPoints, *value, rightClosed);
    counts.validWeight += weight;
    counts.binWeights[bin] += weight;
    if (row.target) counts.classWeights[bin][static_cast<std::size_t>(*category)] += weight;
    AddToRange(counts, *value);
    const std::size_t cut = rightClosed ? bin : bin - 1;  // the only one that can be equal
    if (cut < counts.cutPoints.size() && counts.cutPoints[cut] == *value) {
      row.bins.cutWeights[cut] += weight;
    }
  }

  const BinModel& fModel;
  const MCBin::ColumnNames& fNames;
  const MCBin::MissingTexts& fMissingTexts;
  std::map<std::string, std::size_t> fColumnOf;  // by name
  std::vector<Column> fColumns;
  std::vector<Row> fRows;
};

}  // namespace

Recount CountAgain(const BinModel& model, const std::vector<std::size_t>& results,
                   const MCBin::ColumnNames& names, const RecountWeight& weight,
                   const MCBin::MissingTexts& missingTexts, MCBin::CsvReader& reader,
                   const MCBin::ReadProgress& progress) {
  constexpr double kUnweighted = 1.0;

  Counter counter(model, results, names, missingTexts);
  std::optional<MCBin::WeightCheck> weights;
  if (weight.column != nullptr) {
    weights.emplace(*weight.column, weight.rounding, missingTexts, weight.missing);
  }
  MCBin::RecordPass pass(reader, progress);
  while (pass.Next()) {
    const std::optional<double> recordWeight = weights ? weights->Check(reader) : kUnweighted;
    if (recordWeight) counter.Add(reader, *recordWeight);
  }
  Recount recount = counter.Finish();
  recount.recordCount = pass.GetRecordCount();
  if (weights) recount.dropped = weights->GetDropped();
  return recount;
}

bool HasSameCounts(const AttributeBins& bins, const AttributeBins& others) {
  return bins.binWeights == others.binWeights && bins.classWeights == others.classWeights;
}

// The weight of the cases at a cut point is the most that can be on its other side. Going up
// from the lowest bin, each bin's difference says whether those of the cut above it are.
std::vector<std::size_t> FindRoundedMidpoints(const AttributeBins& bins,
                                              const RecountedBins& recounted, bool rightClosed) {
  const std::vector<double>& counted = recounted.counts.binWeights;
  std::vector<std::size_t> rounded;
  if (bins.binWeights.size() != counted.size()) return rounded;
  double carried = 0.0;  // weight that the cut below took from this bin
  for (std::size_t bin = 0; bin < counted.size(); ++bin) {
    const double counts = rightClosed ? counted[bin] : bins.binWeights[bin];
    const double expected = rightClosed ? bins.binWeights[bin] : counted[bin];
    const double surplus = counts + carried - expected;
    carried = 0.0;
    if (surplus == 0.0) continue;
    const bool explained = bin + 1 < counted.size() && surplus == recounted.cutWeights[bin];
    if (!explained) return {};
    rounded.push_back(bin);
    carried = surplus;
  }
  return rounded;
}

}  // namespace MCBinModel
