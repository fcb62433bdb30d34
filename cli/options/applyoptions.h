#pragma once

#include <optional>
#include <string>
#include <vector>

#include "binmodel/apply/binvalues.h"

namespace MCBin {

// What the user asked of `mcbin apply`.
struct ApplyOptions {
  std::string binFile;
  std::string input = "-";  // "-" is standard input
  std::optional<std::string> target;
  MCBinModel::BinForm form = MCBinModel::BinForm::kIndex;
  std::string suffix = "_bin";
  bool replace = false;  // the attribute's own column, instead of a new one
  std::string missingText;
  std::optional<char> delimiter;                         // unset: as the bin file says
  std::optional<std::vector<std::string>> missingTexts;  // unset: as the bin file says
  bool quiet = false;
};

}  // namespace MCBin
