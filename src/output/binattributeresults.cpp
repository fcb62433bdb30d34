#include "output/binattributeresults.h"

#include "common/displayframe.h"
#include "output/displayresults.h"

std::ostream& BINAttributeResults::Display(std::ostream& os) const {
  MCBinning::DisplayStart(os, "BINAttributeResults");
  os << "BINDataTuple   attribute = " << MCBinning::Plain(fAttributeIndex) << '\n';
  MCBinning::DisplayTotals(os, *this);
  MCBinning::DisplayStatusAndCutPoints(os, fStatus, fCutPoints);
  os << "The CellCounts are\n";
  MCBinning::DisplayCounts(os, fCellCounts);
  os << '\n';
  return MCBinning::DisplayEnd(os, "BINAttributeResults");
}
