#pragma once

#include <mcbinning/host/buildcheck.h>

// Marks what `mcbinmodel` offers to hosts; everything else is hidden, and in the static library all
// of it, as in mcbinning.
#ifdef MCBINMODEL_STATIC
#define MCBINMODEL_API
#else
#define MCBINMODEL_API __attribute__((visibility("default")))
#endif
