#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>

#include "binmodel/apply/weightcoder.h"
#include "csv/csvreader.h"
#include "csv/missingtexts.h"

namespace MCBin {

// Checks the weight of every record.
class WeightCheck {
 public:
  // Borrows all of it. `position` is that of the column in the file.
  WeightCheck(const MCBinModel::WeightInfo& weight, std::size_t position,
              const MissingTexts& missingTexts)
      : fWeight(weight), fPosition(position), fMissingTexts(missingTexts), fCoder(weight) {}

  // The rounded weight of the reader's current record; nothing, and the record is counted,
  // when it has no usable weight. Throws Refusal when the weight is negative, infinite or
  // no number.
  std::optional<double> Check(const CsvReader& reader);

  const MCBinModel::WeightCoder& GetCoder() const { return fCoder; }

  // How many weights were rounded, and what became of their sum; nothing when none was.
  std::optional<std::string> DescribeRounding() const;

 private:
  std::optional<double> Round(double weight);

  const MCBinModel::WeightInfo& fWeight;
  const std::size_t fPosition;
  const MissingTexts& fMissingTexts;
  MCBinModel::WeightCoder fCoder;
  std::uint64_t fRoundedCount = 0;
  double fSum = 0.0;         // of the weights as they are in the file, also those rounded to zero
  double fRoundedSum = 0.0;  // of what they became
};

}  // namespace MCBin
