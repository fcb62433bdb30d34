#pragma once

#include <cstddef>
#include <string>

namespace MCBinModel {

enum class ColorChoice { kAuto, kAlways, kNever };

// How tables for a terminal may look.
struct TextStyle {
  bool bars = false;   // block characters, which need a UTF-8 terminal
  bool color = false;  // escape sequences
};

// What suits standard output as it is now, which a ResultStream changes: bars when the locale is
// UTF-8; with kAuto colours on a terminal unless $NO_COLOR is set.
TextStyle ChooseTextStyle(ColorChoice choice);

// A share of 1 as a bar with a resolution of an eighth of a column, `width` columns wide with
// its blanks. Shares above 0 are always visible. With colours in that of class `index`.
std::string ShareBar(double share, std::size_t width, std::size_t index, const TextStyle& style);

}  // namespace MCBinModel
