#pragma once

// Marks what `mcbinning` offers to hosts; everything else is hidden.
#define MCBINNING_API __attribute__((visibility("default")))
