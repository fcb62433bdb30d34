#pragma once

#include <cstddef>
#include <optional>
#include <string_view>

namespace MCBinModel {

// Texts that say yes or no: true and false, yes and no, t and f, y and n, in any letter case.
struct BooleanText {
  bool isTrue;
  std::size_t pair;  // which of the four
};

// Nothing for any other text, such as one with blanks around it.
std::optional<BooleanText> ParseBoolean(std::string_view text);

}  // namespace MCBinModel
