#include "binmodel/run/recordblocks.h"

#include <algorithm>
#include <utility>

namespace MCBinModel {

RecordBlocks::RecordBlocks(const ColumnSource& source, std::vector<std::size_t> columns)
    : fSource(source),
      fRecordCount(fSource.GetRecordCount()),
      fRecordsPerBlock(static_cast<std::size_t>(
          std::min<std::uint64_t>(fSource.GetRecordsPerBlock(), fRecordCount))),
      fColumns(std::move(columns)),
      fBlock(fColumns.size() * fRecordsPerBlock),
      fNextInBlock(fRecordsPerBlock),
      fRecord(fColumns.size()),
      fRecordValues(&fRecord[0]) {}

bool RecordBlocks::HasMore() {
  fIsAtEnd = fRecordsRead == fRecordCount;
  return !fIsAtEnd;
}

const MCCommon::Record* RecordBlocks::Next() {
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

void RecordBlocks::ReadBlock() {
  try {
    for (std::size_t i = 0; i < fColumns.size(); ++i) {
      fSource.Read(fBlocksRead, fColumns[i], fBlock.data() + i * fRecordsPerBlock);
    }
  } catch (...) {
    fFailure = std::current_exception();
    throw;
  }
  ++fBlocksRead;
  fNextInBlock = 0;
}

void RecordBlocks::RethrowFailure() const {
  if (fFailure) std::rethrow_exception(fFailure);
}

}  // namespace MCBinModel
