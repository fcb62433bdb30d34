#pragma once

#include <optional>
#include <string>
#include <vector>

namespace MCBin {

// What the user asked of `mcbin evaluate`.
struct EvaluateOptions {
  std::string binFile;
  std::string input = "-";  // "-" is standard input
  std::optional<std::string> target;
  std::optional<std::string> weight;  // unset: the bin file's
  bool unweighted = false;            // every record counts once, whatever the bin file says
  std::optional<char> delimiter;      // unset: as the bin file says
  std::optional<std::vector<std::string>> missingTexts;  // unset: as the bin file says
  bool quiet = false;
};

}  // namespace MCBin
