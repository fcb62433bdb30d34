#pragma once

#include <ostream>

#include "../common/export.h"

// One valid case of an attribute in equal-frequency binning.
struct EFBINDataTuple {
  double value;   // of the attribute, never missing
  double weight;  // rounded; 1 without a weight variable

  // By value alone: cases of equal value are equivalent.
  bool operator<(const EFBINDataTuple& other) const { return value < other.value; }

  // Writes a readable dump, in the stream's own formatting.
  MCBINNING_API std::ostream& Display(std::ostream& os) const;
};
