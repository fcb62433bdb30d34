#pragma once

#include <cstddef>
#include <vector>

#include "columns.h"
#include "host/record.h"
#include "host/recorditerator.h"
#include "metadata/columnrecorditerator.h"

namespace bench {

// Hands out columns in memory record by record, with as little work of its own as the record
// interface allows: the target, the attributes, the weight if there is one.
class ColumnIterator : public MCCommon::RecordIterator {
 public:
  // The columns must outlive the iterator.
  explicit ColumnIterator(const Columns& columns);

  bool HasMore() override { return fNext < fCaseCount; }
  const MCCommon::Record* Next() override;

 private:
  std::vector<const double*> fColumns;
  MCCommon::Record fRecord;
  double* fValues;  // of the record, which keeps them in one piece
  std::size_t fNext = 0;
  std::size_t fCaseCount;
};

// Hands out the same columns in blocks.
class BlockIterator : public MCBinning::ColumnRecordIterator {
 public:
  // The columns must outlive the iterator.
  explicit BlockIterator(const Columns& columns);

 protected:
  MCBinning::RecordBlock NextBlock() override;

 private:
  std::vector<MCBinning::BlockColumn> fBlock;
  std::size_t fTaken = 0;
  std::size_t fCasesLeft;
};

}  // namespace bench
