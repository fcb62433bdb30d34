#include "binmodel/run/recordblocks.h"

namespace MCBinModel {

RecordBlocks::RecordBlocks(const ColumnSource& source, const std::vector<SourceColumn>& columns)
    : fBlocks(source, columns) {
  for (std::size_t i = 0; i < columns.size(); ++i) {
    fColumns.push_back({fBlocks.GetValues(i), 1, nullptr, 0});
  }
}

MCBinning::RecordBlock RecordBlocks::NextBlock() {
  try {
    const std::size_t recordCount = fBlocks.ReadNext();
    fIsAtEnd = recordCount == 0;
    return {recordCount, fColumns.data(), fColumns.size()};
  } catch (...) {
    fFailure = std::current_exception();
    throw;
  }
}

void RecordBlocks::RethrowFailure() const {
  if (fFailure) std::rethrow_exception(fFailure);
}

}  // namespace MCBinModel
