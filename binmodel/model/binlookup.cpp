#include "binmodel/model/binlookup.h"

#include <algorithm>
#include <array>
#include <bit>
#include <cmath>
#include <functional>
#include <limits>

#include "binmodel/model/bincodes.h"
#include "binmodel/model/intervaltext.h"
#include "binmodel/text/escape.h"

namespace MCBinModel {

namespace {

// In double quotes where it could be taken for more than one category.
std::string CategoryText(const std::string& label) {
  if (!label.empty() && label.find_first_of(",{}\"") == std::string::npos) return label;
  return QuoteDoubled(label, '"');
}

// Cut points as a binary search meets them: the middle one first, at 1, and below place p those at
// 2p and 2p + 1. Filled up with infinities to one less than a power of two, which is the number of
// leaves.
struct SearchTree {
  std::vector<double> cutPoints;
  std::size_t levelCount = 0;
  std::int32_t lastBin = 0;

  explicit SearchTree(const std::vector<double>& ascending)
      : levelCount(std::bit_width(ascending.size())),
        lastBin(static_cast<std::int32_t>(ascending.size())) {
    cutPoints.assign(GetLeafCount(), std::numeric_limits<double>::infinity());
    for (std::size_t place = 1; place < cutPoints.size(); ++place) {
      const std::size_t below = levelCount - std::bit_width(place);
      const std::size_t inLevel = place - std::bit_floor(place);
      const std::size_t index = ((2 * inLevel + 1) << below) - 1;
      if (index < ascending.size()) cutPoints[place] = ascending[index];
    }
  }

  std::size_t GetLeafCount() const { return std::size_t{1} << levelCount; }
};

// The processor works on so many values at once, as every search takes the same steps, without a
// branch on the data.
constexpr std::size_t kTogether = 8;

template <typename IsBelow>
void SearchTogether(const SearchTree& tree, const double* values, const IsBelow& isBelow,
                    std::int32_t* bins) {
  std::array<std::size_t, kTogether> places;
  places.fill(1);
  for (std::size_t level = 0; level < tree.levelCount; ++level) {
    for (std::size_t i = 0; i < kTogether; ++i) {
      places[i] = 2 * places[i] + (isBelow(tree.cutPoints[places[i]], values[i]) ? 1U : 0U);
    }
  }
  for (std::size_t i = 0; i < kTogether; ++i) {
    const auto leaf = static_cast<std::int32_t>(places[i] - tree.GetLeafCount());
    bins[i] = std::isnan(values[i]) ? -1 : std::min(leaf, tree.lastBin);
  }
}

template <typename IsBelow>
void SearchAll(const SearchTree& tree, const double* values, std::size_t count,
               const IsBelow& isBelow, std::int32_t* bins) {
  std::size_t first = 0;
  for (; first + kTogether <= count; first += kTogether) {
    SearchTogether(tree, values + first, isBelow, bins + first);
  }
  if (first == count) return;
  std::array<double, kTogether> last{};
  std::array<std::int32_t, kTogether> found;
  std::copy(values + first, values + count, last.begin());
  SearchTogether(tree, last.data(), isBelow, found.data());
  std::copy_n(found.begin(), count - first, bins + first);
}

}  // namespace

std::size_t FindBin(const std::vector<double>& cutPoints, double value, bool rightClosed) {
  const auto cut = rightClosed ? std::lower_bound(cutPoints.begin(), cutPoints.end(), value)
                               : std::upper_bound(cutPoints.begin(), cutPoints.end(), value);
  return static_cast<std::size_t>(cut - cutPoints.begin());
}

void FindBins(const std::vector<double>& cutPoints, const double* values, std::size_t count,
              bool rightClosed, std::int32_t* bins) {
  const SearchTree tree(cutPoints);
  if (rightClosed) {
    SearchAll(tree, values, count, std::less<>(), bins);
  } else {
    SearchAll(tree, values, count, std::less_equal<>(), bins);
  }
}

std::string BinLabel(const VariableInfo& attribute, const std::vector<double>& cutPoints,
                     std::size_t bin, bool rightClosed) {
  if (!attribute.IsCategorical()) return IntervalText(attribute, cutPoints, bin, rightClosed);
  std::string categories;
  for (const std::size_t code : CodesInBin(attribute, cutPoints, bin, rightClosed)) {
    categories += (categories.empty() ? "" : ", ") + CategoryText(attribute.GetLabel(code));
  }
  return "{" + categories + "}";
}

}  // namespace MCBinModel
