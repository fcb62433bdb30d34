#pragma once

#include <cstddef>
#include <vector>

#include "binmodel/run/binrun.h"
#include "binmodel/run/columnblocks.h"
#include "binmodel/run/columnsource.h"
#include "metadata/binvarlist.h"

namespace MCBinModel {

// What one algorithm object bins: all targets, the weight, and its share of the attributes.
struct ShareVariables {
  BINVarList list;
  std::vector<SourceColumn> columns;  // by variable index

  // Its attributes and all targets as indexes into the list.
  std::vector<int> attributeIndexes;
  std::vector<int> targetIndexes;
};

// Attributes as indexes into RunVariables::attributes.
using AttributeShare = std::vector<std::size_t>;

// Shares out all attributes, the costly ones first: as many shares as threads, and smaller ones at
// the end where there are many attributes, so that threads that take the next one when they are
// done with one end at about the same time. At most as many threads as attributes. Looks at some
// values of many, as few different ones cost less; throws what the source throws.
std::vector<AttributeShare> ShareOut(const RunVariables& variables, const ColumnSource& columns,
                                     std::size_t threadCount);

// The variables of a share. The first target has the target role, further ones are categorical
// attributes to the algorithm. Category codes are the same in every share.
ShareVariables MakeShareVariables(const RunVariables& variables, const AttributeShare& share);

}  // namespace MCBinModel
