#pragma once

#include "../host/buildcheck.h"

// Marks what `mcbinning` offers to hosts; everything else is hidden. In the static library it is
// hidden as well, so that a plug-in that links it does not export it: build such a plug-in with
// MCBINNING_STATIC, as the target mcbinning::mcbinning_static and `pkg-config --static` do.
#ifdef MCBINNING_STATIC
#define MCBINNING_API
#else
#define MCBINNING_API __attribute__((visibility("default")))
#endif
