#pragma once

#include <string>
#include <vector>

namespace MCBinModel {

// Those of the texts that `wanted` may have been meant to be: the nearest ones, at most a character
// and one more for every four away. Letter case and blanks at the ends are no difference.
std::vector<std::string> FindSimilar(const std::vector<std::string>& texts,
                                     const std::string& wanted);

}  // namespace MCBinModel
