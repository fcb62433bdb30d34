#include "binmodel/model/binlookup.h"

#include <algorithm>

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

}  // namespace

std::size_t FindBin(const std::vector<double>& cutPoints, double value, bool rightClosed) {
  const auto cut = rightClosed ? std::lower_bound(cutPoints.begin(), cutPoints.end(), value)
                               : std::upper_bound(cutPoints.begin(), cutPoints.end(), value);
  return static_cast<std::size_t>(cut - cutPoints.begin());
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
