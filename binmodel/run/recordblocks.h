#pragma once

#include <cstddef>
#include <cstdint>
#include <exception>
#include <vector>

#include "binmodel/run/columnblocks.h"
#include "host/record.h"
#include "host/recorditerator.h"

namespace MCBinModel {

// Hands some columns of a source to an algorithm, one record at a time.
//
// A failure (the source cannot be read) is thrown at the algorithm, which ends the run with an
// error of its own; RethrowFailure() then tells what really happened.
class RecordBlocks final : public MCCommon::RecordIterator {
 public:
  // Position i of a record holds the value of columns[i]. Borrows the source.
  RecordBlocks(const ColumnSource& source, const std::vector<SourceColumn>& columns)
      : fBlocks(source, columns), fRecord(columns.size()), fRecordValues(&fRecord[0]) {}

  RecordBlocks(const RecordBlocks&) = delete;
  RecordBlocks& operator=(const RecordBlocks&) = delete;

  bool HasMore() override;
  const MCCommon::Record* Next() override;

  // HasMore() has answered that there is no other record.
  bool IsAtEnd() const { return fIsAtEnd; }

  std::uint64_t GetRecordCount() const { return fBlocks.GetRecordCount(); }
  std::uint64_t GetRecordsRead() const { return fRecordsRead; }

  void RethrowFailure() const;

 private:
  void ReadBlock();

  ColumnBlocks fBlocks;
  std::size_t fBlockSize = 0;
  std::size_t fNextInBlock = 0;
  std::uint64_t fRecordsRead = 0;
  bool fIsAtEnd = false;
  MCCommon::Record fRecord;
  double* const fRecordValues;  // which lie side by side
  std::exception_ptr fFailure;
};

}  // namespace MCBinModel
