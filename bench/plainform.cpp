#include "plainform.h"

#include <cfloat>
#include <cstddef>
#include <stdexcept>
#include <utility>

namespace bench {

PlainTable MakeTable(const Column& values, const Column& classes, int classCount) {
  const reference::Cases cases = reference::ValidCases(values, classes, {});
  PlainTable table;
  table.boundaries.push_back(-DBL_MAX);
  for (std::size_t i = 0; i + 1 < cases.sorted.size(); ++i) {
    const double value = cases.sorted[i].value;
    if (value != cases.sorted[i + 1].value) table.boundaries.push_back(value);
  }
  table.boundaries.push_back(DBL_MAX);

  const auto categoryCount = static_cast<std::size_t>(classCount);
  if (!reference::BinTable(cases.sorted, table.boundaries, categoryCount, true, table.weights)) {
    throw std::runtime_error("the plain form makes no bin table");
  }
  table.totals.assign(categoryCount + 1, 0.0);
  for (const reference::Case& item : cases.sorted) {
    table.totals[0] += item.weight;
    table.totals[static_cast<std::size_t>(item.target) + 1] += item.weight;
  }
  return table;
}

std::set<double> FindCutPointsAgain(const PlainTable& table, const std::set<double>& cutPoints) {
  const std::size_t categoryCount = table.totals.size() - 1;
  std::set<double> found;
  std::vector<double> left, right;
  std::vector<std::pair<int, int>> intervals{{0, table.GetRowCount() - 1}};
  while (!intervals.empty()) {
    const auto [first, last] = intervals.back();
    intervals.pop_back();
    if (first >= last) continue;
    left.assign(categoryCount + 1, 0.0);
    right.assign(categoryCount + 1, 0.0);
    for (int row = first; row <= last; ++row) {
      for (std::size_t category = 0; category < categoryCount; ++category) {
        const double weight =
            table.weights[static_cast<std::size_t>(row) * categoryCount + category];
        right[0] += weight;
        right[category + 1] += weight;
      }
    }
    const int best = reference::BestSplit(table.weights, first, last, true, left, right);
    const double upper = table.boundaries[static_cast<std::size_t>(best) + 1];
    if (cutPoints.count(upper) == 0) continue;
    found.insert(upper);
    intervals.emplace_back(best + 1, last);
    intervals.emplace_back(first, best);
  }
  return found;
}

CutPoints RunPlainSupervised(const Columns& columns, const RunOptions& options) {
  reference::Options plainOptions;
  plainOptions.distinctThreshold = options.distinctThreshold;
  plainOptions.numberOfBins = options.binCount;
  CutPoints cutPoints;
  for (const Column& attribute : columns.attributes) {
    cutPoints.push_back(
        reference::BinAgainstTarget(attribute, columns.target, columns.weights, plainOptions, 0, 0)
            .cutPoints);
  }
  return cutPoints;
}

CutPoints RunPlainEqualFrequency(const Columns& columns, int binCount) {
  reference::Options options;
  options.numberOfBins = binCount;
  CutPoints cutPoints;
  for (const Column& attribute : columns.attributes) {
    cutPoints.push_back(
        reference::BinEqualFrequency(attribute, columns.weights, options, 0).cutPoints);
  }
  return cutPoints;
}

}  // namespace bench
