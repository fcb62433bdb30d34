#include "binmodel/run/recordblocks.h"

namespace MCBinModel {

bool RecordBlocks::HasMore() {
  fIsAtEnd = fRecordsRead == fBlocks.GetRecordCount();
  return !fIsAtEnd;
}

const MCCommon::Record* RecordBlocks::Next() {
  if (!HasMore()) return nullptr;
  if (fNextInBlock == fBlockSize) ReadBlock();

  const std::size_t stride = fBlocks.GetStride();
  const double* from = fBlocks.GetValues(0) + fNextInBlock;
  for (std::size_t i = 0; i < fRecord.Size(); ++i, from += stride) fRecordValues[i] = *from;
  ++fNextInBlock;
  ++fRecordsRead;
  return &fRecord;
}

void RecordBlocks::ReadBlock() {
  try {
    fBlockSize = fBlocks.ReadNext();
  } catch (...) {
    fFailure = std::current_exception();
    throw;
  }
  fNextInBlock = 0;
}

void RecordBlocks::RethrowFailure() const {
  if (fFailure) std::rethrow_exception(fFailure);
}

}  // namespace MCBinModel
