#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <vector>

#include "../common/export.h"
#include "../host/record.h"
#include "../host/recorditerator.h"

namespace MCBinning {

// The values of one variable in a block of records.
struct BlockColumn {
  // That of the first record; null when no record has one.
  const double* values = nullptr;

  // How many doubles lie from one value to the next; may be negative, or 0 for one that all share.
  std::ptrdiff_t stride = 1;

  // A bit for every record, the lowest of a byte first: 0 where the value is missing, whatever
  // stands in its place. The column begins at bit `validityOffset`. Null where none is missing.
  // (The layout of Apache Arrow.)
  const std::uint8_t* validity = nullptr;
  std::size_t validityOffset = 0;
};

// Records that follow each other, column by column.
struct RecordBlock {
  std::size_t recordCount = 0;           // in this block
  const BlockColumn* columns = nullptr;  // by variable index; null for none
  std::size_t columnCount = 0;           // at `columns`
};

// The host's source of records when it holds columns. The host implements NextBlock() alone.
//
//   Results   statuses, counts, bins and run report are those of the same records one by one; a
//             column that is missing by its bitmap counts as MCMV::gMissingValue.
//   Speed     nothing is called for a single record. Some 10,000 records a block do well.
//   Cancel    is polled once a block, not once a record.
//   Shape     a block with fewer columns than the list has variables ends the run with error
//             120003, as a record of that size would.
//   Records   who knows nothing of columns reads records one by one. So does the data pass where
//             the host's class was compiled without run-time type information (-fno-rtti).
class MCBINNING_API ColumnRecordIterator : public MCCommon::RecordIterator {
 public:
  ColumnRecordIterator(const ColumnRecordIterator&) = delete;
  ColumnRecordIterator& operator=(const ColumnRecordIterator&) = delete;
  ~ColumnRecordIterator() override;

  // As records one by one. Next() may throw std::bad_alloc; both throw what NextBlock() throws.
  bool HasMore() final;
  const MCCommon::Record* Next() final;

  // The records that Next() would hand out up to the end of the host's block, all of them. Lives
  // until the next call. Requires that HasMore() has answered true.
  RecordBlock TakeBlock();

 protected:
  // For derived classes.
  ColumnRecordIterator();

  // The next records; a block without any is the end. What it points to stays the host's and must
  // live until the next call. An exception ends the run with an error status.
  virtual RecordBlock NextBlock() = 0;

 private:
  RecordBlock fBlock;
  std::size_t fTaken = 0;  // of its records
  bool fIsAtEnd = false;
  std::vector<BlockColumn> fRest;  // of a block that was begun record by record
  std::unique_ptr<MCCommon::Record> fRecord;
};

}  // namespace MCBinning
