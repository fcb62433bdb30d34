#pragma once

#include <cstdint>
#include <ostream>

#include "../common/export.h"

// One valid case of an attribute in supervised binning.
struct BINDataTuple {
  double value;         // of the attribute, never missing
  std::uint8_t target;  // category code
  double weight;        // rounded; 1 without a weight variable

  // By value alone: cases of equal value are equivalent.
  bool operator<(const BINDataTuple& other) const { return value < other.value; }

  // Writes a readable dump, in the stream's own formatting.
  MCBINNING_API std::ostream& Display(std::ostream& os) const;
};
