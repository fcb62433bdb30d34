#pragma once

#include "../host/missingvalue.h"

namespace MCMV {

// The system-missing value as it is now: MCMV::gMissingValue, read at every call.
inline double Missing() { return gMissingValue; }

// Whether `x` is the system-missing value, by floating-point equality. A NaN never is,
// so nothing is missing while the system-missing value itself is a NaN.
inline bool IsMissing(double x) { return x == gMissingValue; }

}  // namespace MCMV
