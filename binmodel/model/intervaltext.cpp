#include "binmodel/model/intervaltext.h"

namespace MCBinModel {

std::string IntervalText(const VariableInfo& attribute, const std::vector<double>& cutPoints,
                         std::size_t bin, bool rightClosed) {
  const bool first = bin == 0;
  const bool last = bin == cutPoints.size();
  const std::string low =
      first ? "(-inf" : (rightClosed ? "(" : "[") + attribute.FormatValue(cutPoints[bin - 1]);
  const std::string high =
      last ? "+inf)" : attribute.FormatValue(cutPoints[bin]) + (rightClosed ? "]" : ")");
  return low + ", " + high;
}

}  // namespace MCBinModel
