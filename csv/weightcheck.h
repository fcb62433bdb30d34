#pragma once

#include <cstddef>
#include <optional>

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

 private:
  const MCBinModel::WeightInfo& fWeight;
  const std::size_t fPosition;
  const MissingTexts& fMissingTexts;
  MCBinModel::WeightCoder fCoder;
};

}  // namespace MCBin
