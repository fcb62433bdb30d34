#include "metadata/pass/casereader.h"

#include <fcntl.h>

#include <string>
#include <utility>

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

Descriptor CaseReader::OpenToRead(int file) const {
  const std::string& name = fPreparator.GetFileNames()[static_cast<std::size_t>(file)];
  Descriptor opened(name.c_str(), O_RDONLY | O_NOFOLLOW);
  if (fPreparator.IsWhole(file, opened.Get())) return opened;
  if (!opened.IsOpen()) BinaryRecordIterator(name, opened);  // says so on standard output
  throw StatusError(StatusCode::kTempFileFailed);
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
  std::vector<std::uint16_t> targets = std::exchange(fTargets, {});
  targets.resize(recordCount);
  const double missing = MCMV::Missing();
  std::size_t targetsRead = 0;
  fTarget->NewPass();
  while (fTarget->HasMore()) {
    const BinaryRecordIterator::Block block = fTarget->NextBlock();
    // It may have grown since it was looked at.
    if (block.count > recordCount - targetsRead) throw StatusError(StatusCode::kTempFileFailed);
    ToTargets(block.values, block.count, missing, targets.data() + targetsRead);
    targetsRead += block.count;
  }
  if (targetsRead != recordCount) throw StatusError(StatusCode::kTempFileFailed);
  fTargets.swap(targets);
}

}  // namespace MCBinning
