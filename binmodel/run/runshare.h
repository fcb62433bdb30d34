#pragma once

#include <cstddef>
#include <vector>

#include "binmodel/run/binrun.h"
#include "binmodel/run/columnblocks.h"
#include "metadata/binvarlist.h"

namespace MCBinModel {

// What one algorithm object bins: all targets, the weight, and its share of the attributes.
struct ShareVariables {
  BINVarList list;
  std::vector<SourceColumn> columns;  // by variable index

  // Its attributes and all targets as indexes into the list.
  std::vector<int> attributeIndexes;
  std::vector<int> targetIndexes;

  // Its attributes as indexes into RunVariables::attributes; parallel.
  std::vector<std::size_t> attributes;
};

// The variables of share `share` of `shareCount`. The first target has the target role, further
// ones are categorical attributes to the algorithm. Category codes are the same in every share.
ShareVariables MakeShareVariables(const RunVariables& variables, std::size_t share,
                                  std::size_t shareCount);

}  // namespace MCBinModel
