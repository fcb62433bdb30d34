#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <string>

#include "binmodel/model/variableinfo.h"
#include "csv/csvreader.h"
#include "csv/missingtexts.h"
#include "metadata/bincatnumencoder.h"
#include "metadata/binnumericusermissing.h"
#include "metadata/binstringencoder.h"

namespace MCBinModel {

// Reads one column as the variable of a bin file: numbers as they are, categories by the codes
// that the bin file gave them.
//
//   Missing   what MissingTexts says, NaN, the variable's user-missing values, and a category
//             that the bin file does not know. An open end of a user-missing interval takes
//             in the infinity.
//   Infinity  a number beyond the largest double is infinite, and a value like any other.
class FieldCoder {
 public:
  // Borrows all of it. `position` is that of the column in the file.
  FieldCoder(const VariableInfo& variable, std::size_t position,
             const MCBin::MissingTexts& missingTexts);

  // The value in the reader's current record; nothing when it is missing. Throws Refusal
  // for a text in the column of a continuous variable.
  std::optional<double> Code(const MCBin::CsvReader& reader);

  std::size_t GetPosition() const { return fPosition; }

  // How many values were unknown categories, in words; nothing when none was.
  std::optional<std::string> DescribeUnknown() const;

 private:
  std::optional<double> CodeNumber(const MCBin::CsvReader& reader,
                                   const MCBin::CsvField& field) const;
  std::optional<double> CodeNumericCategory(const MCBin::CsvReader& reader,
                                            const MCBin::CsvField& field);
  std::optional<double> CodeTextCategory(const MCBin::CsvReader& reader,
                                         const MCBin::CsvField& field);
  std::optional<double> CountUnknown(const MCBin::CsvReader& reader, const MCBin::CsvField& field);
  bool IsUserMissing(double value) const;

  const VariableInfo& fVariable;
  const std::size_t fPosition;
  const MCBin::MissingTexts& fMissingTexts;
  std::unique_ptr<BINNumericUserMissing> fUserMissing;
  std::optional<BINCatNumEncoder> fNumbers;
  std::optional<BINStringEncoder> fTexts;
  std::string fText;  // reused: the encoder wants a std::string
  std::uint64_t fUnknownCount = 0;
  std::string fFirstUnknown;
};

}  // namespace MCBinModel
