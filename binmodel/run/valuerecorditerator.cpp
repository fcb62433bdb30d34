#include "binmodel/run/valuerecorditerator.h"

#include <algorithm>
#include <utility>

namespace MCBinModel {

ValueRecordIterator::ValueRecordIterator(std::shared_ptr<const MCBin::ValueFile> values,
                                         std::vector<std::size_t> columns)
    : fValues(std::move(values)),
      fRecordCount(fValues->GetRecordCount()),
      fRecordsPerBlock(static_cast<std::size_t>(
          std::min<std::uint64_t>(fValues->GetRecordsPerBlock(), fRecordCount))),
      fColumns(std::move(columns)),
      fBlock(fColumns.size() * fRecordsPerBlock),
      fNextInBlock(fRecordsPerBlock),
      fRecord(fColumns.size()),
      fRecordValues(&fRecord[0]) {}

bool ValueRecordIterator::HasMore() {
  if (fRecordsRead < fRecordCount) return true;
  fValues.reset();
  return false;
}

const MCCommon::Record* ValueRecordIterator::Next() {
  if (!HasMore()) return nullptr;
  if (fNextInBlock == fRecordsPerBlock) ReadBlock();

  const double* from = fBlock.data() + fNextInBlock;
  for (std::size_t i = 0; i < fColumns.size(); ++i, from += fRecordsPerBlock) {
    fRecordValues[i] = *from;
  }
  ++fNextInBlock;
  ++fRecordsRead;
  return &fRecord;
}

void ValueRecordIterator::ReadBlock() {
  try {
    for (std::size_t i = 0; i < fColumns.size(); ++i) {
      fValues->Read(fBlocksRead, fColumns[i], fBlock.data() + i * fRecordsPerBlock);
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

}  // namespace MCBinModel
