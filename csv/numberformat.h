#pragma once

#include <string_view>

#include "binmodel/text/number.h"

namespace MCBin {

// How a file writes its numbers.
struct NumberFormat {
  char decimal = '.';
  char thousands = '\0';  // none

  bool IsPlain() const { return decimal == '.' && thousands == '\0'; }
};

// What ParseNumber() does, of a number in this format: groups behind the first have three digits,
// and the first begins with another digit than 0. A number in another format is a text.
MCBinModel::ParsedNumber ParseNumber(std::string_view text, const NumberFormat& format);

}  // namespace MCBin
