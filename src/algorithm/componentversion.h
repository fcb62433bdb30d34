#pragma once

#include <string>

#include "version.h"

namespace MCBinning {

// The banner of an algorithm; `kind` tells it from the other one.
inline std::string ComponentVersion(const char* kind) {
  return std::string("Supervised Binning Component Ver. 1.0 (mcbinning " MCBINNING_VERSION_STRING
                     ", ") +
         kind + ")";
}

}  // namespace MCBinning
