#pragma once

#include <array>
#include <string>
#include <vector>

#include "cli/csvreader.h"

namespace MCBin {

// Which fields hold no value: empty or blank ones, and the texts of --na (blanks around
// them ignored). A quoted empty field is a text, unless the list names it as "".
class MissingTexts {
 public:
  explicit MissingTexts(const std::vector<std::string>& texts);

  bool IsMissing(const CsvField& field) const;

 private:
  std::vector<std::string> fTexts;
  std::array<bool, 256> fFirstBytes{};  // most fields are told apart by their first byte
  bool fQuotedEmpty = false;
};

}  // namespace MCBin
