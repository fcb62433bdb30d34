#pragma once

#include <cstdint>
#include <memory>
#include <optional>

#include "csv/columnrequest.h"
#include "csv/csvreader.h"
#include "csv/missingtexts.h"
#include "metadata/binnumericusermissing.h"
#include "metadata/binroundencoder.h"

namespace MCBin {

// Records that take no part in a run, by what is wrong with their weight.
struct DroppedRecords {
  std::uint64_t missing = 0;
  std::uint64_t zero = 0;
  std::uint64_t roundedToZero = 0;

  std::uint64_t GetTotal() const { return missing + zero + roundedToZero; }
};

// Checks the weight of every record.
class WeightCheck {
 public:
  WeightCheck(const ColumnRequest& weight, IBINVariable::BINWRoundingOption rounding,
              const MissingTexts& missingTexts);
  WeightCheck(const WeightCheck&) = delete;
  WeightCheck& operator=(const WeightCheck&) = delete;

  // The rounded weight of the reader's current record; nothing, and the record is counted,
  // when it has no usable weight. Throws InputError when the weight is negative, infinite or
  // no number.
  std::optional<double> Check(const CsvReader& reader);

  const DroppedRecords& GetDropped() const { return fDropped; }

 private:
  const ColumnRequest& fWeight;
  const MissingTexts& fMissingTexts;
  const std::unique_ptr<BINNumericUserMissing> fUserMissing;
  const BINRoundEncoder fEncoder;
  DroppedRecords fDropped;
};

}  // namespace MCBin
