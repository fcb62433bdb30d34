#pragma once

#include "host/recordsexport.h"

namespace MCMV {

// The double that says "this record has no value here", for every variable. Initially
// the most negative finite double. The host may set it before a run; readers look at it
// anew at every test.
extern MCRECORDS_API double gMissingValue;

}  // namespace MCMV
