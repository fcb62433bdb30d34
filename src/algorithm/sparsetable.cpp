#include "algorithm/sparsetable.h"

#include <algorithm>
#include <array>
#include <cfloat>

#include "common/statuscodes.h"
#include "metadata/bindataset.h"
#include "metadata/pass/bintable.h"
#include "metadata/pass/cases.h"
#include "metadata/pass/loadedcases.h"

namespace MCBinning {

namespace {

constexpr std::ptrdiff_t kFewCases = 16;  // of a row; with more, a sum for every category pays

}  // namespace

void SparseTable::AddRow(double boundary) {
  fBoundaries.push_back(boundary);
  fEnds.push_back(fEnds.back());
}

void SparseTable::AddWeight(std::size_t category, double weight) {
  const auto code = static_cast<std::uint8_t>(category);
  const auto row = fCategories.begin() + fEnds[fEnds.size() - 2];
  const auto place = std::lower_bound(row, fCategories.end(), code);
  const auto sum = fWeights.begin() + (place - fCategories.begin());
  if (place != fCategories.end() && *place == code) {
    *sum += weight;
    return;
  }
  fWeights.insert(sum, weight);
  fCategories.insert(place, code);
  ++fEnds.back();
}

// Cases of one value, to the last row. Their weights are added up in their order, category by
// category.
template <typename Case>
void SparseTable::AddCases(const Case* first, const Case* last) {
  const auto forEach = [&](const auto& add) {
    for (const Case* stored = first; stored < last; ++stored) {
      const auto& item = Unpacked(*stored);
      add(item.target, item.weight);
    }
  };
  if (last - first <= kFewCases) {
    forEach([&](std::size_t category, double weight) { AddWeight(category, weight); });
    return;
  }
  std::array<double, 256> sums{};
  forEach([&](std::size_t category, double weight) { sums[category] += weight; });
  for (std::size_t category = 0; category < fCategoryCount; ++category) {
    if (sums[category] != 0.0) AddWeight(category, sums[category]);
  }
}

MCStatus SparseTable::Fill(BINDataSet& dataSet, bool rightBorderClosed) {
  const MCStatus misfit = Warning(StatusCode::kCutPointsMisfit);
  if (!HasBoundaries(dataSet.GetMaximum(), rightBorderClosed)) return misfit;

  fBoundaries.reserve(dataSet.GetNumDistinctValues());
  fEnds.reserve(std::size_t{dataSet.GetNumDistinctValues()} + 1);
  fCategories.reserve(dataSet.GetNumberOfCases());
  fWeights.reserve(dataSet.GetNumberOfCases());
  const bool doesFit = LoadedCases::VisitSupervised(dataSet, [&](const auto& cases) {
    const auto* const end = cases.data() + cases.size();
    for (const auto* item = cases.data(); item < end;) {
      const auto* const first = item;
      do {
        if (Unpacked(*item).target >= fCategoryCount) return false;
        ++item;
      } while (item < end && HaveSameValue(*item, *first));
      AddRow(Unpacked(*first).value);
      AddCases(first, item);
    }
    return true;
  });
  if (!doesFit || fBoundaries.empty()) return misfit;
  if (rightBorderClosed) {
    fBoundaries.back() = DBL_MAX;
  } else {
    fBoundaries.front() = -DBL_MAX;
  }
  return MCStatus();
}

}  // namespace MCBinning
