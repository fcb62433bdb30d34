#pragma once

#include <cstddef>
#include <string>
#include <vector>

#include "cli/columnrequest.h"
#include "cli/inputscan.h"
#include "cli/variableinfo.h"
#include "metadata/binvarlist.h"

namespace MCBin {

// The columns of the file as the component's variables.
struct InputVariables {
  BINVarList list;
  std::vector<std::size_t> positions;  // in the file, by variable index

  // Parallel: what a result says about a variable, and its index in the list.
  std::vector<VariableInfo> attributes;
  std::vector<int> attributeIndexes;
  std::vector<VariableInfo> targets;
  std::vector<int> targetIndexes;
};

// Decides each column's kind by what the first pass found, and builds the list. The first
// target has the target role, further ones are categorical attributes to the component.
//
// Columns that cannot be binned are left out with a note when the user did not ask for
// them by name. Throws InputError for a column asked for that cannot be used, for a target
// without two categories or with too many, and when no attribute is left; UsageError for a
// --missing that does not fit its column's kind.
InputVariables MakeInputVariables(const std::string& fileName,
                                  const std::vector<ColumnRequest>& requests, const InputScan& scan,
                                  IBINVariable::BINWRoundingOption rounding,
                                  std::vector<std::string>& notes);

}  // namespace MCBin
