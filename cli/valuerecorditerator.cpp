#include "cli/valuerecorditerator.h"

#include <utility>

namespace MCBin {

ValueRecordIterator::ValueRecordIterator(const ValueFile& values, std::vector<std::size_t> columns)
    : fValues(values),
      fColumns(std::move(columns)),
      fBlock(fColumns.size() * values.GetRecordsPerBlock()),
      fNextInBlock(values.GetRecordsPerBlock()),
      fRecord(fColumns.size()),
      fRecordValues(&fRecord[0]) {}

bool ValueRecordIterator::HasMore() {
  fAtEnd = fRecordsRead == fValues.GetRecordCount();
  return !fAtEnd;
}

const MCCommon::Record* ValueRecordIterator::Next() {
  if (!HasMore()) return nullptr;
  const std::size_t recordsPerBlock = fValues.GetRecordsPerBlock();
  if (fNextInBlock == recordsPerBlock) ReadBlock();

  const double* from = fBlock.data() + fNextInBlock;
  for (std::size_t i = 0; i < fColumns.size(); ++i, from += recordsPerBlock) {
    fRecordValues[i] = *from;
  }
  ++fNextInBlock;
  ++fRecordsRead;
  return &fRecord;
}

void ValueRecordIterator::ReadBlock() {
  try {
    for (std::size_t i = 0; i < fColumns.size(); ++i) {
      fValues.Read(fBlocksRead, fColumns[i], fBlock.data() + i * fValues.GetRecordsPerBlock());
    }
  } catch (...) {
    fFailure = std::current_exception();
    throw;
  }
  ++fBlocksRead;
  fNextInBlock = 0;
}

void ValueRecordIterator::RethrowFailure() const {
  if (fFailure) std::rethrow_exception(fFailure);
}

}  // namespace MCBin
