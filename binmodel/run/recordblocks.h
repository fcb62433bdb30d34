#pragma once

#include <cstdint>
#include <exception>
#include <vector>

#include "binmodel/run/columnblocks.h"
#include "metadata/columnrecorditerator.h"

namespace MCBinModel {

// Hands some columns of a source to an algorithm, block by block.
//
// A failure (the source cannot be read) is thrown at the algorithm, which ends the run with an
// error of its own; RethrowFailure() then tells what really happened.
class RecordBlocks final : public MCBinning::ColumnRecordIterator {
 public:
  // The variable with index i has the values of columns[i]. Borrows the source.
  RecordBlocks(const ColumnSource& source, const std::vector<SourceColumn>& columns);

  // The algorithm has been told that there is no other record.
  bool IsAtEnd() const { return fIsAtEnd; }

  std::uint64_t GetRecordCount() const { return fBlocks.GetRecordCount(); }

  void RethrowFailure() const;

 protected:
  MCBinning::RecordBlock NextBlock() override;

 private:
  ColumnBlocks fBlocks;
  std::vector<MCBinning::BlockColumn> fColumns;
  bool fIsAtEnd = false;
  std::exception_ptr fFailure;
};

}  // namespace MCBinModel
