#pragma once

#include <optional>
#include <string>
#include <vector>

#include "binmodel/model/missingdefinition.h"

namespace MCBin {

// What a user said is missing in a column of a file, before the column's kind is known.
struct MissingRequest {
  std::string column;
  std::vector<std::string> values;  // as written
  std::optional<MCBinModel::MissingDefinition::Interval> interval;

  // For a column that may turn out to be either: the values that are numbers and the interval,
  // and all values as texts.
  MCBinModel::MissingDefinition ForEitherKind() const;

  // Throw Refusal for a value that is no number, and for an interval of texts.
  MCBinModel::MissingDefinition ForNumbers() const;
  MCBinModel::MissingDefinition ForTexts() const;
};

}  // namespace MCBin
