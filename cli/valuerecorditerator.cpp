#include "cli/valuerecorditerator.h"

#include <utility>

namespace MCBin {

ValueRecordIterator::ValueRecordIterator(const ValueFile& values, std::vector<std::size_t> columns)
    : fValues(values),
      fColumns(std::move(columns)),
      fBlock(fColumns.size() * values.GetRecordsPerBlock()),
      fNextInBlock(values.GetRecordsPerBlock()),
      fRecord(fColumns.size()) {}

bool ValueRecordIterator::HasMore() {
  fAtEnd = fRecordsRead == fValues.GetRecordCount();
  return !fAtEnd;
}

const MCCommon::Record* ValueRecordIterator::Next() {
  if (!HasMore()) return nullptr;
  const std::size_t recordsPerBlock = fValues.GetRecordsPerBlock();
  if (fNextInBlock == recordsPerBlock) ReadBlock();

  const double* from = fBlock.data() + fNextInBlock;
  double* const record = &fRecord[0];  // its values lie side by side
  for (std::size_t i = 0; i < fColumns.size(); ++i, from += recordsPerBlock) record[i] = *from;
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
