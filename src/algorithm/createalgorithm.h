#pragma once

#include <memory>
#include <vector>

#include "common/mcstatus.h"
#include "common/statuscodes.h"
#include "metadata/binvarlist.h"

namespace MCBinning {

// Error 120003 with the first variable that makes the list unusable, or -1, as datum 1.
inline MCStatus CheckVariables(const BINVarList& varList) {
  std::vector<int> oneCategory;
  std::vector<int> noCategory;
  if (varList.IsValidList(oneCategory, noCategory)) return MCStatus();
  MCStatus status = Error(StatusCode::kInvalidVariableList);
  const std::vector<int>& offending = oneCategory.empty() ? noCategory : oneCategory;
  status.SetDiscreteDatum(1, offending.empty() ? -1 : offending.front());
  return status;
}

// What both factories do: check, construct, and let no exception out. `inHand` holds the
// algorithm while it is being made; the caller owns what is returned, null on an error.
template <typename Algorithm, typename Interface, typename Settings>
Interface* CreateAlgorithm(Settings& settings, BINVarList& varList,
                           std::unique_ptr<Interface>& inHand, MCStatus& status) {
  try {
    status = CheckVariables(varList);
    if (status.IsError()) return nullptr;
    inHand = std::make_unique<Algorithm>(settings, varList);
    status = inHand->GetStatus();
  } catch (...) {
    status = Error(StatusCode::kOutOfMemory);
  }
  if (status.IsError()) inHand.reset();
  return inHand.release();
}

}  // namespace MCBinning
