#pragma once

#include <cstddef>

namespace MCBinPython {

// How a decimal number is stored: a whole number in two's complement, lowest byte first, which
// counts units of 10^-scale.
struct DecimalFormat {
  std::size_t bytes = 0;  // 4 to 32
  int scale = 0;
};

// The double next to a decimal number.
double ReadDecimal(const char* number, const DecimalFormat& format);

}  // namespace MCBinPython
