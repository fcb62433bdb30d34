#pragma once

#include <ostream>

#include "common/export.h"

// One valid case of an attribute in equal-frequency binning.
struct EFBINDataTuple {
  double value;
  double weight;

  // By value alone: cases of equal value are equivalent.
  bool operator<(const EFBINDataTuple& other) const { return value < other.value; }

  MCBINNING_API std::ostream& Display(std::ostream& os) const;
};
