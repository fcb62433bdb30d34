#pragma once

#include <cstddef>
#include <vector>

#include "cli/inputvariables.h"
#include "metadata/binvarlist.h"

namespace MCBin {

// What one of several jobs bins: all targets, the weight, and its share of the attributes.
struct JobVariables {
  BINVarList list;
  std::vector<std::size_t> columns;  // of the value file, by variable index

  // Its attributes and all targets as indexes into the list.
  std::vector<int> attributeIndexes;
  std::vector<int> targetIndexes;

  // Its attributes as indexes into InputVariables::attributes; parallel.
  std::vector<std::size_t> attributes;
};

// The variables of job `job` of `jobCount`, which take turns in the order of the attributes.
// The first target has the target role, further ones are categorical attributes to the
// component. Category codes are the same in every job.
JobVariables MakeJobVariables(const InputVariables& variables, std::size_t job,
                              std::size_t jobCount);

}  // namespace MCBin
