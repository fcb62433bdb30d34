#include "metadata/pass/casereader.h"

#include "common/missing.h"
#include "metadata/bindatapreparator.h"

namespace MCBinning {

void CaseReader::Open(const Companions& companions) {
  if (companions.target != kNoFile) {
    UseTarget(companions.target);
    IsWhole(companions.target, fTarget);
  }
  if (companions.weight != kNoFile) IsWhole(companions.weight, fWeight);
}

std::size_t CaseReader::GetRecordCount() const { return fPreparator.GetAllvarNumOfCases(); }

// Opens the file unless it is open already. False when it does not hold a value per record.
bool CaseReader::IsWhole(int file, FileIterator& iterator) const {
  if (iterator) return fPreparator.IsWhole(file, iterator->GetFileDescriptor());
  iterator = fPreparator.OpenWhole(file);
  return iterator != nullptr;
}

void CaseReader::RequireWhole(int file, FileIterator& iterator) const {
  if (!IsWhole(file, iterator)) throw StatusError(StatusCode::kTempFileFailed);
}

// The block that belongs to one of the attribute's, or null when it is not as long.
const double* CaseReader::NextWeights(std::size_t count) {
  const BinaryRecordIterator::Block block = fWeight->NextBlock();
  return block.count == count ? block.values : nullptr;
}

void CaseReader::UseTarget(int file) {
  if (file == fTargetFile) return;
  fTargetFile = file;
  fTarget.reset();
  fTargets.clear();
}

void CaseReader::ReadTargets(int file) {
  UseTarget(file);
  RequireWhole(file, fTarget);
  const std::size_t recordCount = GetRecordCount();
  if (fTargets.size() == recordCount) return;
  fTargets.clear();
  fTargets.reserve(recordCount);
  const double missing = MCMV::Missing();
  fTarget->NewPass();
  while (fTarget->HasMore()) {
    const BinaryRecordIterator::Block block = fTarget->NextBlock();
    for (std::size_t i = 0; i < block.count; ++i) {
      fTargets.push_back(ToTarget(block.values[i], missing));
    }
  }
  if (fTargets.size() != recordCount) throw StatusError(StatusCode::kTempFileFailed);
}

}  // namespace MCBinning
