#pragma once

#include <array>
#include <cstddef>
#include <limits>
#include <vector>

// The plain form of both binning methods: what the library is compared with, bit by bit.
//
// Every step is written down the obvious way and shares no code with the library. It is
// linear where the method is (one pass over the rows per search for a split), so it also
// serves as the yardstick in the benchmarks.
namespace reference {

// Says "no value", in values, targets and weights alike.
inline constexpr double kMissing = std::numeric_limits<double>::lowest();

// One valid case: an attribute's value, the target's category code, the case's weight.
struct Case {
  double value;
  int target;
  double weight;
};

struct Options {
  bool rightBorderClosed = true;
  int distinctThreshold = std::numeric_limits<int>::max();  // more than these: pre-bin
  int numberOfBins = 10;                                    // pre-bins, or the bins wanted
  double smallBinThreshold = 0.0;
};

// Severity: 0 OK, 1 warning, -1 error.
struct Status {
  long code = 0;
  int severity = 0;
  std::array<long, 3> data{0, 0, 0};
};

// The valid cases in ascending order of value; NaN last, equal values in record order.
struct Cases {
  std::vector<Case> sorted;
  unsigned distinctValues = 0;
  double totalWeight = 0.0;
  double totalWeightWithMissing = 0.0;
  double minimum = kMissing;
  double maximum = kMissing;
  std::vector<double> missingWeights;  // of the cases that lack the value alone, by target
};

struct Binning {
  Status status;
  Cases cases;
  std::vector<double> cutPoints;
  std::vector<std::vector<double>> counts;  // per bin: its weight, then one per category
  double modelEntropy = kMissing;
  // Of the best split of all cases: the cut point, its gain and what that must exceed.
  std::vector<double> bestSplit{kMissing, kMissing, kMissing};
};

enum class Rounding { kTruncate, kClosest, kNone };

// A frequency weight as it counts: a positive number, or kMissing.
double RoundedWeight(double weight, Rounding rounding);

// Columns of equal length hold one value per record: `targets` is empty when there is none,
// `weights` (already rounded) when every record weighs 1.
Cases ValidCases(const std::vector<double>& values, const std::vector<double>& targets,
                 const std::vector<double>& weights);

// Weighted percentile cut points of sorted cases. `binWeights` null asks for candidates
// alone: no border trimming, no removal of empty bins. False when there is nothing to cut.
bool PercentileCutPoints(const std::vector<Case>& sorted, int numberOfBins, bool rightBorderClosed,
                         double totalWeight, std::vector<double>& cutPoints,
                         std::vector<double>* binWeights);

// Weight per interval between neighbouring boundaries and per category, row by row. False
// when the boundaries do not hold every case.
bool BinTable(const std::vector<Case>& sorted, const std::vector<double>& boundaries,
              std::size_t categories, bool rightBorderClosed, std::vector<double>& table);

// The weights of the rows first..last: in total, then per category.
std::vector<double> SumRows(const std::vector<double>& table, int first, int last,
                            std::size_t categories);

// The row of the best split of rows first..last. `left` enters as zeros and `right` as what
// SumRows says of them; both leave as the weights of the two sides.
int BestSplit(const std::vector<double>& table, int first, int last, bool rightBorderClosed,
              std::vector<double>& left, std::vector<double>& right);

// The whole road of one attribute against one target. The indices only enter the status.
Binning BinAgainstTarget(const std::vector<double>& values, const std::vector<double>& targets,
                         const std::vector<double>& weights, const Options& options,
                         long attributeIndex, long targetIndex);

// The equal-frequency bins of one attribute; counts hold one weight per bin.
Binning BinEqualFrequency(const std::vector<double>& values, const std::vector<double>& weights,
                          const Options& options, long attributeIndex);

}  // namespace reference
