#pragma once

#include <mcbinning/metadata/ibinvariable.h>

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "missingdefinition.h"

namespace MCBinModel {

// Records that take no part in a run, by what is wrong with their weight.
struct DroppedRecords {
  std::uint64_t missing = 0;        // no number, or a user-missing one
  std::uint64_t zero = 0;           // as it stands there
  std::uint64_t roundedToZero = 0;  // by WeightInfo::rounding

  // All of them.
  std::uint64_t GetTotal() const { return missing + zero + roundedToZero; }
};

// The column of frequency weights.
struct WeightInfo {
  std::string name;                                                        // of the column
  IBINVariable::BINWRoundingOption rounding = IBINVariable::RoundClosest;  // to whole numbers
  MissingDefinition missing;                                               // numbers and interval
};

// The data that bins were made of, and how to read more of the kind.
struct BinSource {
  std::string name;      // of a file; any text, for people
  char delimiter = ',';  // between the fields of a line; an ASCII character
  // Fields that stand for a missing value; numbers with a decimal point, whatever the marks are.
  std::vector<std::string> missingTexts = {"NA"};
  std::optional<WeightInfo> weight;  // nothing when every record weighs 1
  std::uint64_t recordCount = 0;     // the dropped ones included
  DroppedRecords dropped;            // of these, the ones without a usable weight
  char decimal = '.';                // mark of a number's decimals, or ','
  char thousands = '\0';  // between groups of three digits: one of . , ' _ and blank; NUL: none
};

}  // namespace MCBinModel
