#pragma once

#include <cstddef>
#include <string>
#include <vector>

#include "binmodel/model/binmodel.h"

namespace MCBinModel {

// Numbers of an attribute as tables show them. Up to nine digits they stand as they are; longer
// ones are rounded, as finely as it takes to tell them from the values around them: to a small part
// of the distance that the attribute's values have on average, and of that of the cut points. A bin
// file keeps every bit. Times stand as dates, as they are.
class NumberText {
 public:
  // Borrows the attribute.
  NumberText(const VariableInfo& attribute, const AttributeBins& bins);

  // A value of the attribute, such as its minimum.
  std::string OfValue(double value) const;

  std::string OfCutPoint(std::size_t cut) const { return fCutPoints[cut]; }
  const std::vector<std::string>& OfCutPoints() const { return fCutPoints; }

  // Bin `bin`, such as "(-inf, 5.5]".
  std::string OfInterval(std::size_t bin, bool rightClosed) const;

 private:
  const VariableInfo& fAttribute;
  double fTolerance = 0.0;  // that a shown number may be away; 0: it is shown as it is
  std::vector<std::string> fCutPoints;
};

}  // namespace MCBinModel
