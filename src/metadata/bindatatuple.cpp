#include "metadata/bindatatuple.h"

#include "common/displayframe.h"

std::ostream& BINDataTuple::Display(std::ostream& os) const {
  MCBinning::DisplayStart(os, "BINDataTuple");
  os << "Value = " << value << '\n'
     << "Target = " << static_cast<int>(target) << '\n'
     << "Weight = " << weight << '\n';
  return MCBinning::DisplayEnd(os, "BINDataTuple");
}
