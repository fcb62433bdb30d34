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

// A binary search that always takes the same steps: without a branch on the data, the processor
// works on several values at once. `cutPoints` are filled up with infinities to one less than a
// power of two.
template <typename IsBelow>
void SearchAll(const std::vector<double>& cutPoints, const double* values, std::size_t count,
               std::int32_t lastBin, const IsBelow& isBelow, std::int32_t* bins) {
  const auto firstStep = static_cast<std::int32_t>((cutPoints.size() + 1) / 2);
  constexpr std::size_t kTogether = 64;
  std::array<std::int32_t, kTogether> found;
  for (std::size_t first = 0; first < count; first += kTogether) {
    const std::size_t together = std::min(kTogether, count - first);
    const double* const block = values + first;
    found.fill(0);
    for (std::int32_t step = firstStep; step > 0; step /= 2) {
      const double* const middle = cutPoints.data() + step - 1;
      for (std::size_t i = 0; i < together; ++i) {
        found[i] += static_cast<std::int32_t>(isBelow(middle[found[i]], block[i])) * step;
      }
    }
    for (std::size_t i = 0; i < together; ++i) {
      bins[first + i] = std::isnan(block[i]) ? -1 : std::min(found[i], lastBin);
    }
  }
}

}  // namespace

std::size_t FindBin(const std::vector<double>& cutPoints, double value, bool rightClosed) {
  const auto cut = rightClosed ? std::lower_bound(cutPoints.begin(), cutPoints.end(), value)
                               : std::upper_bound(cutPoints.begin(), cutPoints.end(), value);
  return static_cast<std::size_t>(cut - cutPoints.begin());
}

void FindBins(const std::vector<double>& cutPoints, const double* values, std::size_t count,
              bool rightClosed, std::int32_t* bins) {
  std::vector<double> filledUp = cutPoints;
  filledUp.resize(std::bit_ceil(cutPoints.size() + 1) - 1, std::numeric_limits<double>::infinity());
  const auto lastBin = static_cast<std::int32_t>(cutPoints.size());
  if (rightClosed) {
    SearchAll(filledUp, values, count, lastBin, std::less<>(), bins);
  } else {
    SearchAll(filledUp, values, count, lastBin, std::less_equal<>(), bins);
  }
}

std::string BinLabel(const VariableInfo& attribute, const std::vector<double>& cutPoints,
                     std::size_t bin, bool rightClosed) {
  if (!attribute.IsCategorical()) return IntervalText(cutPoints, bin, rightClosed);
  std::string categories;
  for (const std::size_t code : CodesInBin(attribute, cutPoints, bin, rightClosed)) {
    categories += (categories.empty() ? "" : ", ") + CategoryText(attribute.GetLabel(code));
  }
  return "{" + categories + "}";
}

}  // namespace MCBinModel
