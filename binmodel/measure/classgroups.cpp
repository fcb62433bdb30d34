#include "binmodel/measure/classgroups.h"

#include <fmt/format.h>

#include <algorithm>
#include <numeric>

#include "binmodel/measure/binstatistics.h"

namespace MCBinModel {

namespace {

constexpr std::size_t kMostGroups = 8;

// Over all results of the target, by category code.
std::vector<double> SumWeights(const BinModel& model, std::size_t target) {
  std::vector<double> sums(model.targets[target].GetCategoryCount());
  for (const AttributeBins& bins : model.results) {
    if (bins.target != target) continue;
    const std::vector<double> weights = SumClassWeights(bins);
    for (std::size_t code = 0; code < weights.size(); ++code) sums[code] += weights[code];
  }
  return sums;
}

}  // namespace

std::vector<ClassGroup> GroupClasses(const BinModel& model, std::size_t target) {
  const VariableInfo& variable = model.targets[target];
  std::vector<std::size_t> codes(variable.GetCategoryCount());
  std::iota(codes.begin(), codes.end(), std::size_t{0});
  if (codes.size() == 2 && EventCategory(variable) == 1) std::swap(codes[0], codes[1]);

  const bool all = codes.size() <= kMostGroups;
  const std::size_t named = all ? codes.size() : kMostGroups - 1;
  if (!all) {
    const std::vector<double> weights = SumWeights(model, target);
    std::stable_sort(codes.begin(), codes.end(),
                     [&](std::size_t a, std::size_t b) { return weights[a] > weights[b]; });
  }
  std::vector<ClassGroup> groups;
  for (std::size_t i = 0; i < named; ++i) {
    groups.push_back({variable.GetLabel(codes[i]), {codes[i]}});
  }
  if (!all) {
    const auto firstOther = codes.begin() + static_cast<std::ptrdiff_t>(named);
    groups.push_back(
        {fmt::format("others ({} classes)", codes.size() - named), {firstOther, codes.end()}});
  }
  return groups;
}

double GroupWeight(const ClassGroup& group, const std::vector<double>& classWeights) {
  double weight = 0.0;
  for (const std::size_t code : group.codes) weight += classWeights[code];
  return weight;
}

}  // namespace MCBinModel
