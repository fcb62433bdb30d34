#include "support/reference.h"

#include <algorithm>
#include <cfloat>
#include <cmath>
#include <set>
#include <utility>

namespace reference {
namespace {

constexpr double kEpsilon = std::numeric_limits<double>::epsilon();

// The total weight, then the weight of each category.
using WeightVector = std::vector<double>;

double Log2(double x) { return std::log(x) / std::log(2.0); }

double Entropy(const WeightVector& weights) {
  if (weights[0] == 0.0) return 0.0;
  double bits = 0.0;
  for (std::size_t c = 1; c < weights.size(); ++c) {
    const double share = weights[c] / weights[0];
    const double p = share == 0.0 ? 1.0 : share;
    bits += -p * Log2(p);
  }
  return bits;
}

double PartitionEntropy(const WeightVector& left, const WeightVector& right) {
  return (left[0] * Entropy(left) + right[0] * Entropy(right)) / (left[0] + right[0]);
}

int CategoriesIn(const WeightVector& weights) {
  int present = 0;
  for (std::size_t c = 1; c < weights.size(); ++c) {
    if (weights[c] != 0.0) ++present;
  }
  return present;
}

double DescriptionLengthPenalty(const WeightVector& left, const WeightVector& right,
                                double parentEntropy) {
  const int inLeft = CategoriesIn(left);
  const int inRight = CategoriesIn(right);
  const int both = inLeft + inRight;
  return Log2(std::pow(3.0, both) - 2.0) -
         (both * parentEntropy - inLeft * Entropy(left) - inRight * Entropy(right));
}

// Not a boundary: both rows hold weight in one and the same category and in no other.
bool IsBoundary(const double* row, const double* nextRow, std::size_t categories) {
  int inBoth = 0;
  for (std::size_t c = 0; c < categories; ++c) {
    const bool here = row[c] != 0.0;
    const bool there = nextRow[c] != 0.0;
    if (here != there) return true;
    if (here) ++inBoth;
  }
  return inBoth != 1;
}

WeightVector Difference(const WeightVector& from, const WeightVector& what) {
  WeightVector rest(from.size());
  for (std::size_t i = 0; i < from.size(); ++i) rest[i] = from[i] - what[i];
  return rest;
}

std::set<double> Split(const std::vector<double>& table, const std::vector<double>& boundaries,
                       std::size_t categories, bool rightBorderClosed,
                       std::vector<double>& firstSplit) {
  bool isFirst = true;
  std::set<double> cuts;
  std::vector<std::pair<int, int>> open{{0, static_cast<int>(boundaries.size()) - 1}};
  while (!open.empty()) {
    const auto [first, last] = open.back();
    open.pop_back();
    if (last - first < 1) continue;

    WeightVector left(categories + 1, 0.0);
    WeightVector right = SumRows(table, first, last, categories);
    const double entropy = Entropy(right);
    const double weight = right[0];
    const int best = BestSplit(table, first, last, rightBorderClosed, left, right);
    const double gain = entropy - PartitionEntropy(left, right);
    const double penalty = DescriptionLengthPenalty(left, right, entropy);
    const double threshold = Log2(weight - 1.0) / weight + penalty / weight;
    if (isFirst) firstSplit = {boundaries[static_cast<std::size_t>(best)], gain, threshold};
    isFirst = false;
    if (!(gain > threshold)) continue;

    cuts.insert(boundaries[static_cast<std::size_t>(best)]);
    const int split = rightBorderClosed ? best : best - 1;
    if (split + 1 > first) open.emplace_back(split + 1, last);  // only what became smaller
    if (split < last) open.emplace_back(first, split);
  }
  return cuts;
}

std::vector<WeightVector> CountBins(const std::vector<double>& table,
                                    const std::vector<double>& boundaries,
                                    const std::set<double>& cuts, std::size_t categories,
                                    bool rightBorderClosed) {
  const int rows = static_cast<int>(boundaries.size());
  std::vector<WeightVector> bins;
  int start = 0;
  for (const double cut : cuts) {
    int end = start;  // one past the bin's last row
    while (end < rows && boundaries[static_cast<std::size_t>(end)] != cut) ++end;
    if (rightBorderClosed) ++end;
    bins.push_back(SumRows(table, start, end - 1, categories));
    start = end;
  }
  bins.push_back(SumRows(table, start, rows - 1, categories));
  return bins;
}

WeightVector Sum(const WeightVector& a, const WeightVector& b) {
  WeightVector sum(a.size());
  for (std::size_t i = 0; i < a.size(); ++i) sum[i] = a[i] + b[i];
  return sum;
}

void MergeSmallBins(std::vector<WeightVector>& bins, std::set<double>& cuts, double threshold) {
  std::vector<std::size_t> cutsToRemove;
  for (std::size_t i = 1; i < cuts.size(); ++i) {
    const WeightVector& before = bins[i - 1];
    const WeightVector& small = bins[i];
    const WeightVector& after = bins[i + 1];
    if (!(threshold * std::min(before[0], after[0]) > small[0])) continue;
    const double mergedLeft = PartitionEntropy(Sum(before, small), after);
    const double mergedRight = PartitionEntropy(Sum(after, small), before);
    cutsToRemove.push_back(mergedRight >= mergedLeft ? i - 1 : i);
  }
  for (std::size_t done = 0; done < cutsToRemove.size(); ++done) {
    const auto at = static_cast<std::ptrdiff_t>(cutsToRemove[done] - done);
    bins[static_cast<std::size_t>(at)] =
        Sum(bins[static_cast<std::size_t>(at)], bins[static_cast<std::size_t>(at) + 1]);
    bins.erase(bins.begin() + at + 1);
    cuts.erase(std::next(cuts.begin(), at));
  }
}

// The weighted percentiles of sorted cases, asked for in ascending order.
class PercentileScan {
 public:
  PercentileScan(const std::vector<Case>& sorted, bool rightBorderClosed, double totalWeight)
      : fCases(sorted), fRightBorderClosed(rightBorderClosed), fTotal(totalWeight) {}

  double Next(double percent, const std::vector<double>& cutPoints,
              std::vector<double>* binWeights) {
    const double target =
        std::fabs(percent - 100.0) <= 100.0 * kEpsilon ? fTotal : fTotal * percent / 100.0;
    const double current = fCases[fPosition == 0 ? 0 : fPosition - 1].value;
    if (target <= fCumulative && !cutPoints.empty() && current == cutPoints.back()) return current;

    double cumulative = fCumulative;
    double previous = 0.0;
    std::size_t i = fPosition;
    double low = kMissing;
    double high = kMissing;
    while (i < fCases.size() && (target > cumulative || RelativelyEqual(target, cumulative))) {
      high = fCases[i].value;
      previous = cumulative;
      if (RelativelyEqual(cumulative, target)) {
        low = fCases[i - 1].value;
        ++i;
        break;
      }
      do {
        cumulative += fCases[i].weight;
        ++i;
      } while (i < fCases.size() && fCases[i].value == high);
    }

    const bool exactHit = low != kMissing;
    if (binWeights != nullptr) {
      if (fRightBorderClosed) {
        AppendClosed(*binWeights, target, cumulative, previous, exactHit);
      } else {
        AppendOpen(*binWeights, target, cumulative, previous, exactHit);
      }
    }
    fCumulative = exactHit ? previous : cumulative;
    fPosition = exactHit ? i - 1 : i;
    fPrevious = previous;
    return exactHit ? (low + high) / 2.0 : high;
  }

 private:
  static bool RelativelyEqual(double a, double b) {
    return std::fabs(a - b) / std::max(a, b) < kEpsilon;
  }

  void AppendClosed(std::vector<double>& weights, double target, double cumulative, double previous,
                    bool exactHit) const {
    const bool last = target == fTotal;
    if (cumulative <= target && !last) {
      if (previous != 0.0) weights.push_back(previous - fCumulative);
    } else if (exactHit && !last) {
      weights.push_back(previous - fCumulative);
    } else {
      weights.push_back(cumulative - fCumulative);
    }
  }

  void AppendOpen(std::vector<double>& weights, double target, double cumulative, double previous,
                  bool exactHit) const {
    const bool last = target == fTotal;
    if (previous != 0.0) {
      weights.push_back((last ? cumulative : previous) - fPrevious);
      if (!last && cumulative == fTotal) weights.push_back(cumulative - previous);
    } else {
      weights.push_back(!exactHit && fPosition == 0 ? 0.0 : cumulative);
    }
  }

  const std::vector<Case>& fCases;
  bool fRightBorderClosed;
  double fTotal;
  std::size_t fPosition = 0;
  double fCumulative = 0.0;
  double fPrevious = 0.0;
};

void DropEmptyBins(std::vector<double>& cutPoints, std::vector<double>& weights) {
  weights.resize(cutPoints.size() + 1, 0.0);  // absorbed in the sum: no weight
  std::vector<double> keptCuts;
  std::vector<double> keptWeights;
  for (std::size_t i = 0; i < cutPoints.size(); ++i) {
    if (weights[i] == 0.0) continue;
    keptCuts.push_back(cutPoints[i]);
    keptWeights.push_back(weights[i]);
  }
  const double lastWeight = weights[cutPoints.size()];
  if (lastWeight == 0.0 && !keptCuts.empty()) {
    keptCuts.pop_back();
  } else {
    keptWeights.push_back(lastWeight);
  }
  cutPoints = keptCuts;
  weights = keptWeights;
}

std::vector<double> DistinctValues(const std::vector<Case>& sorted) {
  std::vector<double> distinct;
  for (const Case& c : sorted) {
    if (distinct.empty() || c.value != distinct.back()) distinct.push_back(c.value);
  }
  return distinct;
}

// Sets everything of `binning` from its cases on, the status included.
void Partition(Binning& binning, std::vector<double> boundaries, std::size_t categories,
               const Options& options) {
  const std::vector<Case>& sorted = binning.cases.sorted;
  const bool closed = options.rightBorderClosed;
  if (!boundaries.empty()) {
    if (closed && boundaries.back() == sorted.back().value) {
      boundaries.pop_back();
    } else if (!closed && boundaries.front() == sorted.front().value) {
      boundaries.erase(boundaries.begin());
    }
  }
  boundaries.insert(boundaries.begin(), -DBL_MAX);
  boundaries.push_back(DBL_MAX);

  std::vector<double> table;
  if (!BinTable(sorted, boundaries, categories, closed, table)) {
    binning.status = {120002, 1, {}};
    return;
  }
  boundaries.erase(closed ? boundaries.begin() : boundaries.end() - 1);

  std::set<double> cuts = Split(table, boundaries, categories, closed, binning.bestSplit);
  if (cuts.empty()) binning.status = {120017, 1, {}};
  binning.counts = CountBins(table, boundaries, cuts, categories, closed);
  if (options.smallBinThreshold > 0.0 && cuts.size() >= 2) {
    MergeSmallBins(binning.counts, cuts, options.smallBinThreshold);
  }
  double bits = 0.0;
  for (const WeightVector& bin : binning.counts) bits += bin[0] * Entropy(bin);
  binning.modelEntropy = bits / binning.cases.totalWeight;
  binning.cutPoints.assign(cuts.begin(), cuts.end());
}

std::size_t CategoryCount(const std::vector<double>& targets, const std::vector<double>& weights) {
  int largest = 0;
  for (std::size_t i = 0; i < targets.size(); ++i) {
    const bool counts = weights.empty() || weights[i] != kMissing;
    if (counts && targets[i] != kMissing) largest = std::max(largest, static_cast<int>(targets[i]));
  }
  return static_cast<std::size_t>(largest) + 1;
}

}  // namespace

double RoundedWeight(double weight, Rounding rounding) {
  if (weight == kMissing) return kMissing;
  double rounded = weight;
  if (rounding == Rounding::kTruncate) rounded = std::floor(weight);
  if (rounding == Rounding::kClosest) rounded = std::floor(weight + 0.5);
  return rounded <= 0.0 ? kMissing : rounded;
}

Cases ValidCases(const std::vector<double>& values, const std::vector<double>& targets,
                 const std::vector<double>& weights) {
  Cases cases;
  cases.missingWeights = {0.0};
  for (std::size_t i = 0; i < values.size(); ++i) {
    const double weight = weights.empty() ? 1.0 : weights[i];
    if (weight == kMissing) continue;
    cases.totalWeightWithMissing += weight;
    const double target = targets.empty() ? 0.0 : targets[i];
    if (target == kMissing) continue;
    const auto categories = static_cast<std::size_t>(target) + 1;
    if (categories > cases.missingWeights.size()) cases.missingWeights.resize(categories);
    if (values[i] == kMissing) {
      cases.missingWeights[categories - 1] += weight;
      continue;
    }
    cases.totalWeight += weight;
    cases.sorted.push_back({values[i], static_cast<int>(target), weight});
  }
  std::stable_sort(cases.sorted.begin(), cases.sorted.end(), [](const Case& a, const Case& b) {
    return std::isnan(b.value) ? !std::isnan(a.value) : a.value < b.value;
  });
  if (cases.sorted.empty()) return cases;
  cases.minimum = cases.sorted.front().value;
  cases.maximum = cases.sorted.back().value;
  cases.distinctValues = 1;
  for (std::size_t i = 1; i < cases.sorted.size(); ++i) {
    if (cases.sorted[i].value != cases.sorted[i - 1].value) ++cases.distinctValues;
  }
  return cases;
}

bool PercentileCutPoints(const std::vector<Case>& sorted, int numberOfBins, bool rightBorderClosed,
                         double totalWeight, std::vector<double>& cutPoints,
                         std::vector<double>* binWeights) {
  if (numberOfBins < 1 || sorted.empty() || totalWeight <= 0.0) return false;
  const double step = 100.0 / numberOfBins;
  PercentileScan scan(sorted, rightBorderClosed, totalWeight);
  for (int k = 0; k < numberOfBins; ++k) {
    const double percent = std::min(step * (k + 1), 100.0);
    const double value = scan.Next(percent, cutPoints, binWeights);
    if (k == numberOfBins - 1) continue;
    if (cutPoints.empty() || value != cutPoints.back()) cutPoints.push_back(value);
  }
  if (binWeights == nullptr) return true;

  if (!cutPoints.empty() && rightBorderClosed && cutPoints.back() == sorted.back().value) {
    cutPoints.pop_back();
  } else if (!cutPoints.empty() && !rightBorderClosed &&
             cutPoints.front() == sorted.front().value) {
    cutPoints.erase(cutPoints.begin());
    if (!binWeights->empty()) binWeights->erase(binWeights->begin());
  }
  if (cutPoints.empty() && binWeights->empty()) binWeights->push_back(totalWeight);
  DropEmptyBins(cutPoints, *binWeights);
  return true;
}

bool BinTable(const std::vector<Case>& sorted, const std::vector<double>& boundaries,
              std::size_t categories, bool rightBorderClosed, std::vector<double>& table) {
  const std::size_t rows = boundaries.size() - 1;
  table.assign(rows * categories, 0.0);
  std::size_t row = 0;
  for (const Case& c : sorted) {
    const auto belongs = [&] {
      const double upper = boundaries[row + 1];
      return rightBorderClosed ? c.value <= upper : c.value < upper;
    };
    while (row < rows && !belongs()) ++row;
    if (row == rows) return false;
    table[row * categories + static_cast<std::size_t>(c.target)] += c.weight;
  }
  return row == rows - 1;
}

std::vector<double> SumRows(const std::vector<double>& table, int first, int last,
                            std::size_t categories) {
  WeightVector sum(categories + 1, 0.0);
  for (int row = first; row <= last; ++row) {
    const double* const weights = &table[static_cast<std::size_t>(row) * categories];
    for (std::size_t c = 0; c < categories; ++c) sum[c + 1] += weights[c];
  }
  for (std::size_t c = 1; c <= categories; ++c) sum[0] += sum[c];
  return sum;
}

int BestSplit(const std::vector<double>& table, int first, int last, bool rightBorderClosed,
              std::vector<double>& left, std::vector<double>& right) {
  const WeightVector total = right;
  const std::size_t categories = total.size() - 1;
  const auto rowAt = [&](int row) { return &table[static_cast<std::size_t>(row) * categories]; };

  int best = 0;
  double bestEntropy = 0.0;
  bool haveBest = false;
  int nextRow = first;  // the first row that is still on the right side
  bool boundaryBefore = false;
  for (int row = first; row <= last; ++row) {
    const bool boundaryAfter = row < last && IsBoundary(rowAt(row), rowAt(row + 1), categories);
    const bool evaluate = boundaryBefore || boundaryAfter;
    boundaryBefore = boundaryAfter;
    if (!evaluate) continue;

    for (const int end = rightBorderClosed ? row + 1 : row; nextRow < end; ++nextRow) {
      const double* const weights = rowAt(nextRow);
      for (std::size_t c = 0; c < categories; ++c) {
        left[0] += weights[c];
        left[c + 1] += weights[c];
        right[0] -= weights[c];
        right[c + 1] -= weights[c];
      }
    }
    const double entropy = PartitionEntropy(left, right);
    if (!haveBest || bestEntropy > entropy) {
      best = row;
      bestEntropy = entropy;
      haveBest = true;
    }
  }

  const int lastLeft = rightBorderClosed ? best : best - 1;
  if ((first + last) / 2.0 >= best) {
    left = SumRows(table, first, lastLeft, categories);
    right = Difference(total, left);
  } else {
    right = SumRows(table, lastLeft + 1, last, categories);
    left = Difference(total, right);
  }
  return best;
}

Binning BinAgainstTarget(const std::vector<double>& values, const std::vector<double>& targets,
                         const std::vector<double>& weights, const Options& options,
                         long attributeIndex, long targetIndex) {
  Binning binning;
  binning.cases = ValidCases(values, targets, weights);
  const Cases& cases = binning.cases;
  if (cases.sorted.empty()) {
    binning.status = {120015, 1, {}};
    return binning;
  }
  const std::size_t categories = CategoryCount(targets, weights);
  const auto threshold = static_cast<unsigned>(options.distinctThreshold);
  if (threshold > 0 && cases.distinctValues > threshold) {
    std::vector<double> candidates;
    if (PercentileCutPoints(cases.sorted, options.numberOfBins, options.rightBorderClosed,
                            cases.totalWeight, candidates, nullptr)) {
      Partition(binning, candidates, categories, options);
    }
  } else {
    Partition(binning, DistinctValues(cases.sorted), categories, options);
  }
  if (cases.distinctValues == 1) binning.status = {120014, 1, {attributeIndex, 0, 0}};
  if (categories == 1) binning.status = {120016, 1, {targetIndex, 0, 0}};
  return binning;
}

Binning BinEqualFrequency(const std::vector<double>& values, const std::vector<double>& weights,
                          const Options& options, long attributeIndex) {
  Binning binning;
  binning.cases = ValidCases(values, {}, weights);
  if (binning.cases.sorted.empty()) {
    binning.status = {120015, 1, {}};
    return binning;
  }
  std::vector<double> binWeights;
  PercentileCutPoints(binning.cases.sorted, options.numberOfBins, options.rightBorderClosed,
                      binning.cases.totalWeight, binning.cutPoints, &binWeights);
  for (const double weight : binWeights) binning.counts.push_back({weight});
  if (binning.cutPoints.empty()) binning.status = {120019, 1, {attributeIndex, 0, 0}};
  if (binning.cases.distinctValues == 1) binning.status = {120014, 1, {attributeIndex, 0, 0}};
  return binning;
}

}  // namespace reference
