#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>

#include "binmodel/apply/valuecoder.h"
#include "csv/csvreader.h"
#include "csv/missingtexts.h"

namespace MCBin {

// Reads one column as the variable of a bin file: see ValueCoder. What MissingTexts says is
// missing, too.
class FieldCoder {
 public:
  // Borrows all of it. `position` is that of the column in the file.
  FieldCoder(const MCBinModel::VariableInfo& variable, std::size_t position,
             const MissingTexts& missingTexts)
      : fVariable(variable), fPosition(position), fMissingTexts(missingTexts), fCoder(variable) {}

  // The value in the reader's current record; NaN when it is missing. Throws Refusal for a text
  // in the column of a continuous variable.
  double Code(const CsvReader& reader);

  // How many values were unknown categories, in words; nothing when none was.
  std::optional<std::string> DescribeUnknown() const;

 private:
  MCBinModel::CodedValue CodeField(const CsvField& field) const;
  [[noreturn]] void RefuseText(const CsvField& field) const;

  const MCBinModel::VariableInfo& fVariable;
  const std::size_t fPosition;
  const MissingTexts& fMissingTexts;
  const MCBinModel::ValueCoder fCoder;
  std::uint64_t fUnknownCount = 0;
  std::string fFirstUnknown;
};

}  // namespace MCBin
