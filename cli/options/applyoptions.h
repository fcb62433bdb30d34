#pragma once

#include <optional>
#include <string>
#include <vector>

#include "csv/binwriter.h"

namespace MCBin {

// What the user asked of `mcbin apply`.
struct ApplyOptions {
  std::string binFile;
  std::string input = "-";  // "-" is standard input
  std::optional<std::string> target;
  BinColumns columns;
  std::optional<char> delimiter;                         // unset: as the bin file says
  std::optional<std::vector<std::string>> missingTexts;  // unset: as the bin file says
  bool quiet = false;
};

}  // namespace MCBin
