#pragma once

#include <string>

namespace MCBinning {

// The banner of an algorithm; `kind` tells it from the other one.
inline std::string ComponentVersion(const char* kind) {
  return std::string("Supervised Binning Component Ver. 1.0 (mcbinning " MCBINNING_VERSION ", ") +
         kind + ")";
}

}  // namespace MCBinning
