#include "algorithm/efbinfactory.h"

#include "algorithm/createalgorithm.h"
#include "algorithm/efbinalgorithm.h"
#include "common/displayframe.h"

EFBINFactory::EFBINFactory() = default;

EFBINFactory::~EFBINFactory() = default;

IEFBINAlgorithm* EFBINFactory::CreateEFBINAlgorithm(EFBINSettings& settings, BINVarList& varList) {
  return MCBinning::CreateAlgorithm<EFBINAlgorithm>(settings, varList, fAlgorithm, fStatus);
}

MCBinning::MCStatus EFBINFactory::GetStatus() const { return fStatus; }

std::ostream& EFBINFactory::Display(std::ostream& os) const {
  MCBinning::DisplayStart(os, "EFBINFactory");
  os << "Status code = " << fStatus.GetErrorCode() << '\n';
  return MCBinning::DisplayEnd(os, "EFBINFactory");
}
