#pragma once

#include "common/mcstatus.h"
#include "common/statuscodes.h"

namespace MCBinModel {

// "ok", "warning" or "error".
inline const char* DescribeSeverity(const MCBinning::MCStatus& status) {
  return status.IsOK() ? "ok" : status.IsWarning() ? "warning" : "error";
}

// Whether all went well and no split was certain enough: a result, though the status is a warning.
inline bool IsPlainNoCut(const MCBinning::MCStatus& status) {
  return status.IsWarning() && MCBinning::HasCode(status, MCBinning::StatusCode::kNoCutAccepted);
}

}  // namespace MCBinModel
