#pragma once

#include <optional>
#include <string_view>

#include "binmodel/text/number.h"

namespace MCBin {

// One field of a record. A quoted empty field ("") is a text of its own, an unquoted one
// is no value; hence the flag.
struct CsvField {
  std::string_view text;  // without the quotes, doubled quotes made single
  bool quoted;

  // The value of a plain decimal without quotes and blanks, which the reader comes by while it
  // looks for the end of the field; other numbers are left to ParseNumber().
  std::optional<double> decimal = std::nullopt;

  // In a file with a number format of its own: no number, whatever it looks like. The others have
  // their value in `decimal`.
  bool isText = false;
};

inline MCBinModel::ParsedNumber ParseNumber(const CsvField& field) {
  if (field.decimal) return {MCBinModel::NumberKind::kNumber, *field.decimal};
  if (field.isText) return {MCBinModel::NumberKind::kText, 0.0};
  return MCBinModel::ParseNumber(field.text);
}

}  // namespace MCBin
