#pragma once

#include "binmodel/report/binreport.h"

namespace MCBin {

enum class ColorChoice { kAuto, kAlways, kNever };

// What suits standard output as it is now, which a ResultStream changes: bars when the locale is
// UTF-8; with kAuto colours on a terminal unless $NO_COLOR is set.
MCBinModel::TextStyle ChooseTextStyle(ColorChoice choice);

}  // namespace MCBin
