#pragma once

#include <algorithm>
#include <cstddef>
#include <ostream>
#include <string>
#include <vector>

#include "metadata/ibinusermissing.h"

namespace MCBinning {

// What both category encoders do with their codes.

// The code of a missing or unknown value.
constexpr double kNoCategoryCode = -1.0;

// How many codes to reserve room for. A host's hint may be negative, or far beyond what its
// data will ever need; it must cost nothing then.
inline std::size_t CodesToReserve(int capacity) {
  constexpr int kMaxReserved = 4096;
  return static_cast<std::size_t>(std::clamp(capacity, 0, kMaxReserved));
}

// Lengthens `labels` to the number of categories and sets the label of `code`, if there is
// such a category.
inline void SetLabelOfCode(std::vector<std::string>& labels, std::size_t categoryCount, int code,
                           const std::string& label) {
  if (labels.size() < categoryCount) labels.resize(categoryCount);
  if (code < 0 || static_cast<std::size_t>(code) >= categoryCount) return;
  labels[static_cast<std::size_t>(code)] = label;
}

inline void DisplayEncoderUserMissing(std::ostream& os, const IBINUserMissing* userMissing) {
  if (userMissing == nullptr) return;
  os << "\t\tUser-missing values for this encoder:\n\t\t";
  userMissing->Display(os);
}

}  // namespace MCBinning
