#pragma once

#include <string>

#include "binmodel/text/displaytext.h"

namespace MCBin {

// A path for messages. An empty one shows as a pair of quotes.
inline std::string PathText(const std::string& path) {
  return path.empty() ? "''" : MCBinModel::PrintableText(path);
}

}  // namespace MCBin
