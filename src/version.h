#pragma once

#include "common/export.h"

// The version of these headers, as numbers and as text; the build takes its own from here.
#define MCBINNING_VERSION_MAJOR 0
#define MCBINNING_VERSION_MINOR 1
#define MCBINNING_VERSION_PATCH 0
#define MCBINNING_VERSION_STRING "0.1.0"

// One number to compare: 100 for version 0.1.0, 10203 for 1.2.3.
#define MCBINNING_VERSION_NUMBER \
  (10000 * MCBINNING_VERSION_MAJOR + 100 * MCBINNING_VERSION_MINOR + MCBINNING_VERSION_PATCH)

namespace MCBinning {

// The version of the library that runs, such as "0.1.0"; MCBINNING_VERSION_STRING is that of the
// headers that the host was compiled with.
MCBINNING_API const char* GetVersion();

}  // namespace MCBinning
