#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

#include "binmodel/model/variableinfo.h"
#include "binmodel/run/columnsource.h"

namespace MCBinModel {

// A column of a source, and what its values are.
struct SourceColumn {
  std::size_t column;
  const VariableInfo* variable;  // null for weights
};

// Reads some columns of a source side by side, one block after the other. What is missing becomes
// MCMV::gMissingValue, whatever the source says for it.
class ColumnBlocks {
 public:
  // Borrows the source and the variables.
  ColumnBlocks(const ColumnSource& source, std::vector<SourceColumn> columns);

  // Goes on to the next block and answers how many records it has, 0 after the last one. Throws
  // what the source throws, and Refusal for an infinite value of a continuous variable.
  std::size_t ReadNext();

  // The values of the block, in the order of the columns, and how far two columns lie apart.
  const double* GetValues(std::size_t column) const { return fValues.data() + column * fStride; }
  std::size_t GetStride() const { return fStride; }

  std::uint64_t GetRecordCount() const { return fRecordCount; }

 private:
  void Clean(const SourceColumn& column, double* values, std::size_t count) const;

  const ColumnSource& fSource;
  const std::vector<SourceColumn> fColumns;
  const std::uint64_t fRecordCount;
  const std::size_t fStride;
  std::vector<double> fValues;  // column by column
  std::size_t fBlocksRead = 0;
  std::uint64_t fRecordsRead = 0;
};

}  // namespace MCBinModel
