#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>

#include "binmodel/apply/weightcoder.h"
#include "binmodel/text/number.h"
#include "csv/csvrecord.h"
#include "csv/missingtexts.h"

namespace MCBin {

// Checks the weight of every record.
class WeightCheck {
 public:
  // Borrows all of it. `position` is that of the column in the file.
  WeightCheck(const MCBinModel::WeightInfo& weight, std::size_t position,
              const MissingTexts& missingTexts)
      : fWeight(weight), fPosition(position), fMissingTexts(missingTexts), fCoder(weight) {}

  // The rounded weight of a record; nothing, and the record is counted,
  // when it has no usable weight. Throws Refusal when the weight is negative, infinite or
  // no number.
  std::optional<double> Check(const CsvRecord& record);

  // The two steps of it. What a field says: kNaN when it is missing. And the rounded weight, as
  // MCBinModel::WeightCoder says, of a number or NaN.
  MCBinModel::ParsedNumber Parse(const CsvField& field) const;
  std::optional<double> Add(double weight);

  const MCBinModel::WeightInfo& GetWeight() const { return fWeight; }
  const MCBinModel::WeightCoder& GetCoder() const { return fCoder; }

  // How many weights were rounded, and what became of their sum; nothing when none was.
  std::optional<std::string> DescribeRounding() const;

 private:
  const MCBinModel::WeightInfo& fWeight;
  const std::size_t fPosition;
  const MissingTexts& fMissingTexts;
  MCBinModel::WeightCoder fCoder;
  std::uint64_t fRoundedCount = 0;
  double fSum = 0.0;         // of the weights as they are in the file, also those rounded to zero
  double fRoundedSum = 0.0;  // of what they became
};

}  // namespace MCBin
