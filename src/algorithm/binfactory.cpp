#include "algorithm/binfactory.h"

#include "algorithm/binalgorithm.h"
#include "algorithm/createalgorithm.h"
#include "common/displayframe.h"

BINFactory::BINFactory() = default;

BINFactory::~BINFactory() = default;

IBINAlgorithm* BINFactory::CreateBINAlgorithm(BINSettings& settings, BINVarList& varList) {
  return MCBinning::CreateAlgorithm<BINAlgorithm>(settings, varList, fAlgorithm, fStatus);
}

MCBinning::MCStatus BINFactory::GetStatus() const { return fStatus; }

std::ostream& BINFactory::Display(std::ostream& os) const {
  MCBinning::DisplayStart(os, "BINFactory");
  os << "Status code = " << fStatus.GetErrorCode() << '\n';
  return MCBinning::DisplayEnd(os, "BINFactory");
}
