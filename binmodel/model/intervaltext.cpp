#include "binmodel/model/intervaltext.h"

#include "binmodel/text/number.h"

namespace MCBinModel {

std::string IntervalText(const std::vector<double>& cutPoints, std::size_t bin, bool rightClosed) {
  const bool first = bin == 0;
  const bool last = bin == cutPoints.size();
  const std::string low =
      first ? "(-inf" : (rightClosed ? "(" : "[") + FormatNumber(cutPoints[bin - 1]);
  const std::string high =
      last ? "+inf)" : FormatNumber(cutPoints[bin]) + (rightClosed ? "]" : ")");
  return low + ", " + high;
}

}  // namespace MCBinModel
