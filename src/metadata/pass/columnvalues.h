#pragma once

#include <cstddef>

#include "common/missing.h"
#include "metadata/columnrecorditerator.h"

namespace MCBinning {

// `use` takes a function that answers the value of a record, counted from record `first`, and
// returns the same type for all. How the column lies in memory is asked here, once, and not for
// every value.
template <typename Use>
auto UseValues(const BlockColumn& column, std::size_t first, const Use& use) {
  const double missing = MCMV::Missing();
  if (column.values == nullptr) return use([missing](std::size_t) { return missing; });

  const std::ptrdiff_t stride = column.stride;
  const double* const values = column.values + static_cast<std::ptrdiff_t>(first) * stride;
  if (column.validity == nullptr && stride == 1) {
    return use([values](std::size_t i) { return values[i]; });
  }
  if (column.validity == nullptr) {
    return use([=](std::size_t i) { return values[static_cast<std::ptrdiff_t>(i) * stride]; });
  }
  const std::uint8_t* const validity = column.validity;
  const std::size_t offset = column.validityOffset + first;
  return use([=](std::size_t i) {
    const std::size_t bit = offset + i;
    const bool isValid = ((validity[bit / 8] >> (bit % 8)) & 1) != 0;
    return isValid ? values[static_cast<std::ptrdiff_t>(i) * stride] : missing;
  });
}

}  // namespace MCBinning
