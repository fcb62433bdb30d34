#pragma once

#include <cstdint>
#include <memory>
#include <optional>

#include "binmodel/model/binsource.h"
#include "csv/columnrequest.h"
#include "csv/csvreader.h"
#include "csv/missingtexts.h"
#include "metadata/binnumericusermissing.h"
#include "metadata/binroundencoder.h"

namespace MCBin {

// Checks the weight of every record.
class WeightCheck {
 public:
  WeightCheck(const ColumnRequest& weight, IBINVariable::BINWRoundingOption rounding,
              const MissingTexts& missingTexts, const MCBinModel::MissingDefinition& missing);
  WeightCheck(const WeightCheck&) = delete;
  WeightCheck& operator=(const WeightCheck&) = delete;

  // The rounded weight of the reader's current record; nothing, and the record is counted,
  // when it has no usable weight. Throws Refusal when the weight is negative, infinite or
  // no number.
  std::optional<double> Check(const CsvReader& reader);

  const MCBinModel::DroppedRecords& GetDropped() const { return fDropped; }

 private:
  const ColumnRequest& fWeight;
  const MissingTexts& fMissingTexts;
  const std::unique_ptr<BINNumericUserMissing> fUserMissing;
  const BINRoundEncoder fEncoder;
  MCBinModel::DroppedRecords fDropped;
};

}  // namespace MCBin
