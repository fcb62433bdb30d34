#pragma once

#include "common/mcstatus.h"

namespace MCBinModel {

// "ok", "warning" or "error".
inline const char* DescribeSeverity(const MCBinning::MCStatus& status) {
  return status.IsOK() ? "ok" : status.IsWarning() ? "warning" : "error";
}

}  // namespace MCBinModel
