#pragma once

#include <mcbinning/metadata/binnumericusermissing.h>
#include <mcbinning/metadata/binroundencoder.h>

#include <cstdint>
#include <memory>
#include <optional>
#include <string>

#include "../model/binmodelexport.h"
#include "../model/binsource.h"

namespace MCBinModel {

// Reads the frequency weights of records, and counts the records that they drop.
class MCBINMODEL_API WeightCoder {
 public:
  // Copies what it needs.
  explicit WeightCoder(const WeightInfo& weight);

  // The rounded weight; nothing, and the record is counted, when it is missing (NaN,
  // MCMV::gMissingValue, what the definition says), zero or rounded to zero. Throws Refusal
  // (RefusalCode::kBadWeight) when it is negative or infinite.
  std::optional<double> Code(double weight);

  // The records dropped so far.
  const DroppedRecords& GetDropped() const { return fDropped; }

  // Throws Refusal (RefusalCode::kNoRecords) when all of `recordCount` records were dropped, or
  // there is none. `place` says where they are from.
  void CheckRecordsLeft(std::uint64_t recordCount, const std::string& place = {}) const;

 private:
  std::string fName;
  std::unique_ptr<const BINNumericUserMissing> fUserMissing;
  BINRoundEncoder fEncoder;
  DroppedRecords fDropped;
};

}  // namespace MCBinModel
