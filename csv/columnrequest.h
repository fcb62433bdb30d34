#pragma once

#include <cstddef>
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

  // Throw Refusal for a value that is no number, or no time, and for an interval of texts.
  MCBinModel::MissingDefinition ForNumbers() const;
  MCBinModel::MissingDefinition ForTimes() const;
  MCBinModel::MissingDefinition ForTexts() const;
};

enum class ColumnUse { kTarget, kWeight, kAttribute };

// How a column is to be read: as its fields suggest, or as the user said.
enum class KindRequest { kDetect, kContinuous, kCategorical };

// What a run wants of one column of the file.
struct ColumnRequest {
  std::size_t position;  // in the file
  std::string name;
  ColumnUse use;
  KindRequest kind;
  bool byName;  // the user named it: it is not left out silently
  MissingRequest missing;

  // Its categories are needed, if it turns out to have any.
  bool MayBeCategorical() const {
    return use == ColumnUse::kTarget || kind == KindRequest::kCategorical;
  }
};

}  // namespace MCBin
