#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "binmodel/model/missingdefinition.h"
#include "metadata/ibinvariable.h"

namespace MCBinModel {

// Records that take no part in a run, by what is wrong with their weight.
struct DroppedRecords {
  std::uint64_t missing = 0;
  std::uint64_t zero = 0;
  std::uint64_t roundedToZero = 0;

  std::uint64_t GetTotal() const { return missing + zero + roundedToZero; }
};

// The column of frequency weights.
struct WeightInfo {
  std::string name;
  IBINVariable::BINWRoundingOption rounding = IBINVariable::RoundClosest;
  MissingDefinition missing;
};

// The data that bins were made of, and how to read more of the kind.
struct BinSource {
  std::string name;
  char delimiter = ',';
  std::vector<std::string> missingTexts = {"NA"};
  std::optional<WeightInfo> weight;
  std::uint64_t recordCount = 0;  // the dropped ones included
  DroppedRecords dropped;
};

}  // namespace MCBinModel
