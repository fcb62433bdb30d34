#include "output/binattributetargetresults.h"

#include "common/displayframe.h"
#include "output/displayresults.h"

std::ostream& BINAttributeTargetResults::Display(std::ostream& os) const {
  MCBinning::DisplayStart(os, "BINAttributeTargetResults");
  os << "BINDataTuple   attribute = " << MCBinning::Plain(fAttributeIndex) << '\n'
     << "target = " << MCBinning::Plain(fTargetIndex) << '\n';
  MCBinning::DisplayTotals(os, *this);
  os << "Model Entropy = " << fModelEntropy << '\n';
  MCBinning::DisplayStatusAndCutPoints(os, fStatus, fCutPoints);
  os << "The CellCounts are\n";
  for (const std::vector<double>& counts : fCellCounts) MCBinning::DisplayCounts(os, counts);
  os << '\n';
  return MCBinning::DisplayEnd(os, "BINAttributeTargetResults");
}
