#include "metadata/columnrecorditerator.h"

#include "metadata/pass/columnvalues.h"

namespace MCBinning {

ColumnRecordIterator::ColumnRecordIterator() = default;

ColumnRecordIterator::~ColumnRecordIterator() = default;

bool ColumnRecordIterator::HasMore() {
  if (fTaken == fBlock.recordCount && !fIsAtEnd) {
    fTaken = 0;
    fBlock = RecordBlock();
    fBlock = NextBlock();
    if (fBlock.columns == nullptr) fBlock.columnCount = 0;
    fIsAtEnd = fBlock.recordCount == 0;
  }
  return !fIsAtEnd;
}

const MCCommon::Record* ColumnRecordIterator::Next() {
  if (!HasMore()) return nullptr;
  if (!fRecord || fRecord->Size() != fBlock.columnCount) {
    fRecord = std::make_unique<MCCommon::Record>(fBlock.columnCount);
  }
  for (std::size_t i = 0; i < fBlock.columnCount; ++i) {
    (*fRecord)[i] =
        UseValues(fBlock.columns[i], fTaken, [](const auto& valueAt) { return valueAt(0); });
  }
  ++fTaken;
  return fRecord.get();
}

RecordBlock ColumnRecordIterator::TakeBlock() {
  RecordBlock block = fBlock;
  if (fTaken > 0) {
    fRest.assign(fBlock.columns, fBlock.columns + fBlock.columnCount);
    for (BlockColumn& column : fRest) {
      if (column.values != nullptr) {
        column.values += static_cast<std::ptrdiff_t>(fTaken) * column.stride;
      }
      column.validityOffset += fTaken;
    }
    block = {fBlock.recordCount - fTaken, fRest.data(), fBlock.columnCount};
  }
  fTaken = fBlock.recordCount;
  return block;
}

}  // namespace MCBinning
