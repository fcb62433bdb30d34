#pragma once

#include <optional>
#include <string_view>

#include "binmodel/text/number.h"
#include "csv/numberformat.h"

namespace MCBin {

// One field of a record. A quoted empty field ("") is a text of its own, an unquoted one
// is no value; hence the flag.
struct CsvField {
  std::string_view text;  // without the quotes, doubled quotes made single
  bool quoted;

  // The value of a plain decimal without quotes and blanks, if the reader came by it while it
  // looked for the end of the field; other numbers are left to ParseNumber().
  std::optional<double> decimal = std::nullopt;

  // In a file with a number format of its own: no number, whatever it looks like. The others have
  // their value in `decimal`.
  bool isText = false;
};

// A field of a file with such numbers.
inline CsvField MakeField(std::string_view text, bool quoted, const NumberFormat& numbers) {
  CsvField field{text, quoted};
  if (numbers.IsPlain()) return field;
  const MCBinModel::ParsedNumber number = ParseNumber(text, numbers);
  if (number.kind == MCBinModel::NumberKind::kNumber) field.decimal = number.value;
  field.isText = number.kind == MCBinModel::NumberKind::kText;
  return field;
}

inline MCBinModel::ParsedNumber ParseNumber(const CsvField& field) {
  if (field.decimal) return {MCBinModel::NumberKind::kNumber, *field.decimal};
  if (field.isText) return {MCBinModel::NumberKind::kText, 0.0};
  return MCBinModel::ParseNumber(field.text);
}

}  // namespace MCBin
