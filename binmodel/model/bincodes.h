#pragma once

#include <cstddef>
#include <vector>

#include "binmodel/model/binlookup.h"

namespace MCBinModel {

// The codes of the categories that lie in a bin, ascending; none for a continuous attribute.
inline std::vector<std::size_t> CodesInBin(const VariableInfo& attribute,
                                           const std::vector<double>& cutPoints, std::size_t bin,
                                           bool rightClosed) {
  std::vector<std::size_t> codes;
  for (std::size_t code = 0; code < attribute.GetCategoryCount(); ++code) {
    if (FindBin(cutPoints, static_cast<double>(code), rightClosed) == bin) codes.push_back(code);
  }
  return codes;
}

}  // namespace MCBinModel
