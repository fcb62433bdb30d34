#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <vector>

#include "binmodel/model/variableinfo.h"
#include "csv/columnrequest.h"
#include "csv/inputscan.h"
#include "metadata/ibinvariable.h"

namespace MCBin {

// The columns of the file as variables.
struct InputVariables {
  struct Weight {
    std::string name;
    IBINVariable::BINWRoundingOption rounding;
    MCBinModel::MissingDefinition missing;
    std::size_t column;  // of the value file
  };

  // Parallel: what a result says about a variable, and its column in the value file.
  std::vector<MCBinModel::VariableInfo> attributes;
  std::vector<std::size_t> attributeColumns;
  std::vector<MCBinModel::VariableInfo> targets;
  std::vector<std::size_t> targetColumns;

  std::optional<Weight> weight;
};

// Decides each column's kind by what the pass over the file found.
//
// Columns that cannot be binned are left out with a note when the user did not ask for
// them by name. Throws Refusal for a column asked for that cannot be used, for a target
// without two categories or with too many, for missing values that do not fit their column's
// kind, and when no attribute is left.
InputVariables MakeInputVariables(const std::string& fileName,
                                  const std::vector<ColumnRequest>& requests, const InputScan& scan,
                                  IBINVariable::BINWRoundingOption rounding,
                                  std::vector<std::string>& notes);

}  // namespace MCBin
