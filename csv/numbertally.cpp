#include "csv/numbertally.h"

#include <cmath>

#include "csv/numberformat.h"

namespace MCBin {

void NumberTally::Look(double value, std::string_view text) {
  if (value == std::trunc(value)) return;
  fAreWhole = false;
  constexpr NumberFormat kComma{',', '.'};
  fHaveDecimalPoint =
      fHaveDecimalPoint || ParseNumber(text, kComma).kind != MCBinModel::NumberKind::kNumber;
}

}  // namespace MCBin
