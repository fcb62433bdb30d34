#pragma once

#include "buildcheck.h"

// Marks what `mcrecords` offers to other libraries; everything else is hidden. With
// MCRECORDS_STATIC, in the static library, that is hidden as well.
#ifdef MCRECORDS_STATIC
#define MCRECORDS_API
#else
#define MCRECORDS_API __attribute__((visibility("default")))
#endif
