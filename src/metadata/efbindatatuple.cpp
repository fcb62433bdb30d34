#include "metadata/efbindatatuple.h"

#include "common/displayframe.h"

std::ostream& EFBINDataTuple::Display(std::ostream& os) const {
  MCBinning::DisplayStart(os, "EFBINDataTuple");
  os << "Value = " << value << '\n' << "Weight = " << weight << '\n';
  return MCBinning::DisplayEnd(os, "EFBINDataTuple");
}
