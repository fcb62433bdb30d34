#pragma once

#include <cstdint>
#include <ostream>

#include "common/export.h"

// One valid case of an attribute in supervised binning.
struct BINDataTuple {
  double value;
  std::uint8_t target;  // category code
  double weight;

  // By value alone: cases of equal value are equivalent.
  bool operator<(const BINDataTuple& other) const { return value < other.value; }

  MCBINNING_API std::ostream& Display(std::ostream& os) const;
};
