#pragma once

#include <array>
#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

#include "csv/csvfield.h"
#include "csv/numberformat.h"

namespace MCBin {

// The texts of --na for a file with such numbers, as MissingTexts takes them: -999.5 for -999,5.
std::vector<std::string> PlainMissingTexts(std::vector<std::string> texts,
                                           const NumberFormat& numbers);

// Which fields hold no value: empty or blank ones, and these texts (blanks around them
// ignored). One that is a number stands for all fields of that value, -999 for -999.0 and inf for
// Inf, however the file writes its numbers. A quoted empty field is a text, unless the list names
// it as "".
class MissingTexts {
 public:
  explicit MissingTexts(const std::vector<std::string>& texts);

  bool IsMissing(const CsvField& field) const {
    const bool toldByItsFirstByte = !field.text.empty() && !MayBegin(field.text.front());
    return !toldByItsFirstByte && IsMissingText(field);
  }

  // Whether a field that begins so may be missing.
  bool MayBegin(char first) const { return fMayBegin[static_cast<unsigned char>(first)]; }

 private:
  static std::size_t FirstByte(std::string_view text) {
    return static_cast<unsigned char>(text.front());
  }
  bool IsMissingText(const CsvField& field) const;
  void AddInfinity(std::string_view text);

  std::vector<std::string> fTexts;        // those that are no numbers
  std::vector<std::string> fNumberTexts;  // the others,
  std::vector<double> fNumbers;           // and their values
  std::array<bool, 256> fMayBegin{};      // a missing text begins with one of these, or is empty
  bool fInfinity = false;
  bool fMinusInfinity = false;
  bool fQuotedEmpty = false;
};

}  // namespace MCBin
