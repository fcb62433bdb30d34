#pragma once

#include "recordsexport.h"

// The system-missing value.
namespace MCMV {

// The double that says "this record has no value here", for every variable. Initially
// the most negative finite double. The host may set it while no run is under way in any
// thread; readers look at it anew at every test.
extern MCRECORDS_API double gMissingValue;

}  // namespace MCMV
