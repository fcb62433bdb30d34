#include "binmodel/apply/bincounter.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <utility>

#include "binmodel/measure/binstatistics.h"
#include "binmodel/model/binlookup.h"

namespace MCBinModel {

namespace {

constexpr std::size_t kNoPlace = std::numeric_limits<std::size_t>::max();

void AddToRange(AttributeBins& counts, double value) {
  counts.minimum = std::min(counts.minimum.value_or(value), value);
  counts.maximum = std::max(counts.maximum.value_or(value), value);
}

}  // namespace

BinCounter::BinCounter(const BinModel& model, const std::vector<std::size_t>& results)
    : fModel(model),
      fAttributePlaces(model.attributes.size(), kNoPlace),
      fTargetPlaces(model.targets.size(), kNoPlace) {
  for (const std::size_t index : results) AddResult(index);
}

// One for each variable, however many results use it.
std::size_t BinCounter::PlaceOf(const Variable& variable) {
  std::size_t& place = (variable.isTarget ? fTargetPlaces : fAttributePlaces)[variable.index];
  if (place == kNoPlace) {
    place = fVariables.size();
    fVariables.push_back(variable);
  }
  return place;
}

void BinCounter::AddResult(std::size_t index) {
  const AttributeBins& bins = fModel.results[index];
  const std::size_t binCount = bins.cutPoints.size() + 1;
  Row row;
  row.bins.result = index;
  row.bins.cutWeights.assign(bins.cutPoints.size(), 0.0);
  row.bins.counts.attribute = bins.attribute;
  row.bins.counts.target = bins.target;
  row.bins.counts.cutPoints = bins.cutPoints;
  row.bins.counts.binWeights.assign(binCount, 0.0);
  row.bins.counts.missing.emplace();
  row.attribute = PlaceOf({false, bins.attribute});
  if (bins.target) {
    row.target = PlaceOf({true, *bins.target});
    const std::vector<double> noWeights(fModel.GetTarget(bins)->GetCategoryCount(), 0.0);
    row.bins.counts.classWeights.assign(binCount, noWeights);
    row.bins.counts.missing->classWeights = noWeights;
  }
  fRows.push_back(std::move(row));
}

void BinCounter::Add(const double* values, double weight) {
  for (Row& row : fRows) AddCase(row, values[row.attribute], values[row.target], weight);
}

void BinCounter::Add(const double* const* columns, const double* weights, std::size_t count) {
  for (Row& row : fRows) {
    const double* const values = columns[row.attribute];
    const double* const categories = columns[row.target];
    for (std::size_t i = 0; i < count; ++i) {
      const double weight = weights == nullptr ? 1.0 : weights[i];
      if (!std::isnan(weight)) AddCase(row, values[i], categories[i], weight);
    }
  }
}

// `category` is of no account without a target.
void BinCounter::AddCase(Row& row, double value, double category, double weight) const {
  AttributeBins& counts = row.bins.counts;
  counts.weightWithMissing += weight;
  const std::size_t classCount = counts.target ? counts.classWeights.front().size() : 0;
  const bool hasClass = category >= 0.0 && category < static_cast<double>(classCount);
  if (counts.target && !hasClass) return;
  const auto code = static_cast<std::size_t>(counts.target ? category : 0.0);
  if (std::isnan(value)) {
    counts.missing->weight += weight;
    if (counts.target) counts.missing->classWeights[code] += weight;
    return;
  }

  const bool rightClosed = fModel.settings.rightClosed;
  const std::size_t bin = FindBin(counts.cutPoints, value, rightClosed);
  counts.validWeight += weight;
  counts.binWeights[bin] += weight;
  if (counts.target) counts.classWeights[bin][code] += weight;
  AddToRange(counts, value);
  const std::size_t cut = rightClosed ? bin : bin - 1;  // the only one that can be equal
  if (cut < counts.cutPoints.size() && counts.cutPoints[cut] == value) {
    row.bins.cutWeights[cut] += weight;
  }
}

std::vector<RecountedBins> BinCounter::Finish() {
  std::vector<RecountedBins> results;
  for (Row& row : fRows) {
    AttributeBins& counts = row.bins.counts;
    if (counts.validWeight == 0.0) {
      counts.binWeights.clear();
      counts.classWeights.clear();
    } else if (counts.target) {
      counts.modelEntropy = ModelEntropy(counts);
      counts.informationGain = InformationGain(counts);
    }
    results.push_back(std::move(row.bins));
  }
  fRows.clear();
  return results;
}

bool HasSameCounts(const AttributeBins& bins, const AttributeBins& others) {
  const bool sameMissing = !bins.missing || !others.missing ||
                           (bins.missing->weight == others.missing->weight &&
                            bins.missing->classWeights == others.missing->classWeights);
  return bins.binWeights == others.binWeights && bins.classWeights == others.classWeights &&
         sameMissing;
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
