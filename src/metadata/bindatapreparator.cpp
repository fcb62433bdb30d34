#include "metadata/bindatapreparator.h"

#include <sys/stat.h>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <ctime>
#include <limits>
#include <numeric>
#include <utility>

#include "common/bincancelinfo.h"
#include "common/binprogressreporter.h"
#include "common/displayframe.h"
#include "common/exactarithmetic.h"
#include "common/guard.h"
#include "common/missing.h"
#include "common/progresslistener.h"
#include "common/statuscodes.h"
#include "common/stopwatch.h"
#include "metadata/binaryrecorditerator.h"
#include "metadata/binnumericusermissing.h"
#include "metadata/binroundencoder.h"
#include "metadata/binvarlist.h"
#include "metadata/categorycode.h"
#include "metadata/tempfile.h"

using MCBinning::Error;
using MCBinning::MCStatus;
using MCBinning::StatusCode;
using MCBinning::TempFile;

namespace {

constexpr int kCacheCapacity = 10000;

// Stops the process: with fewer files than variables two of them would share a file.
void RequireFileForEachVariable(bool holds) {
  if (holds) return;
  std::fprintf(stderr,
               "src/metadata/bindatapreparator: Assertion `fOrigRecSize <= fProcRecSize' "
               "failed: a variable of the list has no role, or two have the same one.\n");
  std::abort();
}

// Whether a new file can have the name; nothing is opened, as that may block. Where the
// directory may not be searched every name is free: then the first append fails instead of the
// search going on for ever.
bool IsFreeName(const std::string& name) {
  struct stat status = {};
  return ::lstat(name.c_str(), &status) != 0;
}

}  // namespace

BINDataPreparator::BINDataPreparator(BINVarList& variables, BINCancelInfo& cancel,
                                     std::string tempDirName, ProgressListener* listener,
                                     int progressInterval)
    : fTempDirName(std::move(tempDirName)),
      fProgressListener(listener),
      fProgressInterval(progressInterval),
      fTargetPosition(-1),
      fWeightPosition(-1),
      fWeightPresent(-1),
      fVarList(variables),
      fLargestRecordCount(static_cast<double>(std::numeric_limits<unsigned long>::max())),
      fSkipRecord(false),
      fOrigRecSize(static_cast<unsigned int>(variables.Size())),
      fProcRecSize(0),
      fNumAttributes(static_cast<unsigned int>(variables.GetNumAttributeVars())),
      fCancel(cancel),
      fWeightEncoder(nullptr),
      fCacheCapacity(kCacheCapacity),
      fStoredRecords(0),
      fHasWeight(variables.GetWeightIndex() >= 0 ? 1 : 0),
      fHasTarget(variables.GetTargetIndex() >= 0 ? 1 : 0),
      fFirstSlot(nullptr),
      fNextColumn(0),
      fNameCounter(0),
      fIsComplete(true) {
  fProcRecSize = fNumAttributes + static_cast<unsigned int>(fHasTarget + fHasWeight);
  // A list that names no file for some variable is refused later; until then every position
  // that one of its variables leads to exists.
  const std::size_t fileCount = std::max({fOrigRecSize, fProcRecSize, 1U});
  fLargestCode.assign(fileCount, 0);
  fUsable.assign(fileCount, true);
  fHasStopped.assign(fileCount, false);
  fOpenFiles.resize(fOrigRecSize);
  std::iota(fOpenFiles.begin(), fOpenFiles.end(), 0);
  for (int index = 0; index < variables.Size(); ++index) MapVariable(index);
}

BINDataPreparator::~BINDataPreparator() = default;

void BINDataPreparator::MapVariable(int index) {
  const IBINVariable& variable = *std::as_const(fVarList).GetVarAt(index);
  fUserMissing.push_back(variable.GetUserMissingInfo());
  fMeasureLevels.push_back(variable.GetMeasureLevel());
  fRoles.push_back(fVarList.GetVariableRole(index));

  int file = -1;
  switch (fRoles.back()) {
    case IBINVariable::RoleAttribute: {
      file = static_cast<int>(fAttributes.size()) + fHasTarget + fHasWeight;
      fAttributes.push_back(index);
      const IBINUserMissing* const missing = fUserMissing.back();
      const bool isNumeric =
          missing != nullptr && missing->GetDataType() == IBINUserMissing::UserMissingNumeric;
      fColumns.push_back(
          {static_cast<std::size_t>(index), static_cast<std::size_t>(file),
           fMeasureLevels.back() == IBINVariable::MeasureContinuous,
           isNumeric ? dynamic_cast<const BINNumericUserMissing*>(missing) : nullptr});
      break;
    }
    case IBINVariable::RoleTarget:
      file = 0;
      fTargetPosition = index;
      break;
    case IBINVariable::RoleFrequencyWeight:
      file = fHasTarget;
      fWeightPosition = index;
      fWeightPresent = 1;
      fWeightEncoder =
          dynamic_cast<const BINRoundEncoder*>(std::as_const(fVarList).GetEncoderAt(index));
      break;
    case IBINVariable::RoleUndefined:
      break;
  }
  fVarToFile.push_back(file);
}

MCStatus BINDataPreparator::CheckRoles() const {
  const std::pair<int, IBINVariable::VariableRole> named[] = {
      {fVarList.GetTargetIndex(), IBINVariable::RoleTarget},
      {fVarList.GetWeightIndex(), IBINVariable::RoleFrequencyWeight}};
  for (const auto& [index, role] : named) {
    if (index < 0 || fVarList.GetVariableRole(index) == role) continue;
    MCStatus status(120003, false);
    status.SetDiscreteDatum(1, index);
    return status;
  }
  return MCStatus();
}

MCStatus BINDataPreparator::ProcessSource(MCCommon::RecordIterator& source) {
  return MCBinning::Guard([&]() -> MCStatus {
    MCStatus status = SetUpTempFiles();
    if (status.IsOK()) status = CheckRoles();
    if (!status.IsOK()) return fStatus = status;

    status = ReadRecords(source);
    if (status.IsError()) return status;
    const MCStatus lastTransfer = TransferData();
    if (HasCode(lastTransfer, StatusCode::kOutOfMemory)) return lastTransfer;
    fIsComplete = lastTransfer.IsOK();
    ReleaseCache();
    if (fStoredRecords == 0) return MCStatus(120004, false);
    if (fCancel.IsCancel()) return fStatus = MCStatus(1, false);
    MarkUndeclaredCategories();
    return fStatus;
  });
}

MCStatus BINDataPreparator::ReadRecords(MCCommon::RecordIterator& source) {
  BINProgressReporter reporter;
  const MCBinning::Stopwatch stopwatch;
  unsigned int recordsRead = 0;
  auto countdown = static_cast<unsigned int>(fProgressInterval);
  MCStatus status;

  while (source.HasMore() && !fCancel.IsCancel()) {
    const MCCommon::Record* const record = source.Next();
    if (record != nullptr) {
      ++recordsRead;
      if (!PrepareRecord(*record, GetNextSlots(), status)) return status;
      if (!fSkipRecord && !StoreRecord(status)) return status;
    }
    if (fProgressListener != nullptr && --countdown == 0) {
      reporter.SetValues(recordsRead, stopwatch.GetSeconds());
      fProgressListener->ReportProgress(reporter);
      countdown = static_cast<unsigned int>(fProgressInterval);
    }
  }
  return MCStatus();
}

MCStatus BINDataPreparator::ProcessRecord(const MCCommon::Record& in, MCCommon::Record& out) {
  return MCBinning::Guard([&] {
    std::vector<double> values(fUsable.size());
    MCStatus status;
    PrepareRecord(in, {values.data(), 1}, status);
    for (std::size_t file = 0; file < out.Size(); ++file) {
      out[file] = file < fProcRecSize ? values[file] : 0.0;
    }
    return status;
  });
}

// `status` changes only where there is something to say; making one for every record would cost
// as much as preparing it. False on an error.
bool BINDataPreparator::PrepareRecord(const MCCommon::Record& in, const Slots& out,
                                      MCStatus& status) {
  fSkipRecord = false;
  if (fWeightEncoder != nullptr) {
    const double weight = fWeightEncoder->Encode(in[static_cast<std::size_t>(fWeightPosition)]);
    fSkipRecord = MCMV::IsMissing(weight);
    if (fSkipRecord) return true;
    out[static_cast<std::size_t>(fHasTarget)] = weight;
  }

  if (fTargetPosition >= 0 &&
      !PrepareTarget(in[static_cast<std::size_t>(fTargetPosition)], out[0])) {
    status = MCStatus(120012, fVarList.GetNumCatVar() > 1);
    status.SetDiscreteDatum(0, fTargetPosition);
    if (status.IsError()) return false;
  }
  for (const Column& column : fColumns) {
    const double value = in[column.variable];
    double& slot = out[column.file];
    if (column.isContinuous) {
      const bool isMissing = column.missing != nullptr && column.missing->Contains(value);
      slot = isMissing ? MCMV::Missing() : value;
    } else if (MCMV::IsMissing(value) || value == -1.0) {
      slot = MCMV::Missing();
    } else if (!StoreCategory(value, MCBinning::ToCategoryCode(value), column.file, slot)) {
      status = MCStatus(120012, true);
      status.SetDiscreteDatum(0, static_cast<long>(column.file));
    }
  }
  return true;
}

// The code -1 and the system-missing value both say that there is no category.
bool BINDataPreparator::PrepareTarget(double value, double& slot) {
  const int code = MCBinning::ToCategoryCode(value);
  if (code != -1 && !MCMV::IsMissing(value)) return StoreCategory(value, code, 0, slot);
  slot = MCMV::Missing();
  return true;
}

bool BINDataPreparator::StoreCategory(double value, int code, std::size_t file, double& slot) {
  slot = 0.0;
  if (!fUsable[file]) return true;
  if (!MCBinning::IsCategoryCode(code)) {
    fUsable[file] = false;
    fHasStopped[file] = true;
    std::erase(fOpenFiles, static_cast<int>(file));
    fCache.SetRowSize(static_cast<int>(file), fNextColumn);
    return false;
  }
  slot = value;
  fLargestCode[file] = std::max(fLargestCode[file], code);
  return true;
}

BINDataPreparator::Slots BINDataPreparator::GetNextSlots() {
  return {fFirstSlot + fNextColumn, static_cast<std::size_t>(fCache.GetNCols())};
}

bool BINDataPreparator::StoreRecord(MCStatus& status) {
  if (!fOpenFiles.empty()) ++fNextColumn;
  if (fNextColumn == fCache.GetNCols()) {
    status = TransferData();
    if (status.IsError()) return false;
  }
  ++fStoredRecords;
  return true;
}

void BINDataPreparator::MarkUndeclaredCategories() {
  for (std::size_t variable = 0; variable < fOrigRecSize; ++variable) {
    const IBINVariable::MeasureLevel level = fMeasureLevels[variable];
    if (level != IBINVariable::MeasureNumericCategorical &&
        level != IBINVariable::MeasureStringCategorical) {
      continue;
    }
    const auto file = static_cast<std::size_t>(fVarToFile[variable]);
    const int declared =
        std::as_const(fVarList).GetVarAt(static_cast<int>(variable))->GetNumberOfCategories();
    if (fLargestCode[file] >= declared) fUsable[file] = false;
  }
}

MCStatus BINDataPreparator::IsValidTarget(int file, bool& valid) {
  if (file < 0 || static_cast<unsigned int>(file) >= fOrigRecSize) return MCStatus(120013, false);
  valid = fUsable[static_cast<std::size_t>(file)];
  return MCStatus();
}

MCStatus BINDataPreparator::SetUpTempFiles() {
  return MCBinning::Guard([&] { return NameFiles(); });
}

MCStatus BINDataPreparator::NameFiles() {
  if (fTempDirName.find('\0') != std::string::npos) return Error(StatusCode::kTempFileFailed);
  if (!fCache.Resize(static_cast<int>(fProcRecSize), fCacheCapacity)) {
    fCacheCapacity /= 2;
    if (!fCache.Resize(static_cast<int>(fProcRecSize), fCacheCapacity)) return MCStatus(3, false);
  }
  fCache.Flush();
  fFirstSlot = fCache.GetRowPtr(0);
  fNextColumn = 0;
  fFiles.clear();
  fFileNames.assign(fProcRecSize, std::string());
  if (!fTempDirName.empty() && fTempDirName.back() != '\\' && fTempDirName.back() != '/') {
    fTempDirName += '/';
  }
  RequireFileForEachVariable(fOrigRecSize <= fProcRecSize);

  fNameCounter = static_cast<unsigned long>(std::clock());
  for (std::size_t file = 0; file < fOrigRecSize; ++file) {
    const MCStatus status = SeekFreeName(fFileNames[file]);
    if (!status.IsOK()) return status;
    fFiles.emplace_back(fFileNames[file]);
  }
  return MCStatus();
}

// The counter moves past each name that is given out, so no two files of a run start on the
// same one.
MCStatus BINDataPreparator::SeekFreeName(std::string& name) {
  char digits[2 * sizeof(unsigned long) + 1];
  for (;;) {
    std::snprintf(digits, sizeof digits, "%lx", fNameCounter++);
    std::string candidate = fTempDirName + digits;
    if (IsFreeName(candidate)) {
      name = std::move(candidate);
      return MCStatus();
    }
    if (fCancel.IsCancel()) return MCStatus(1, false);
  }
}

MCStatus BINDataPreparator::TransferData() {
  return MCBinning::Guard([&]() -> MCStatus {
    for (const int file : fOpenFiles) fCache.SetRowSize(file, fNextColumn);
    for (std::size_t file = 0; file < fFiles.size(); ++file) {
      const MCStatus status = AppendRow(file);
      if (!status.IsOK()) return status;
    }
    fCache.Flush();
    fNextColumn = 0;
    return MCStatus();
  });
}

void BINDataPreparator::ReleaseCache() {
  fCache = BINDataCache();
  fFirstSlot = nullptr;
}

MCStatus BINDataPreparator::AppendRow(std::size_t file) {
  const int row = static_cast<int>(file);
  const auto count = static_cast<std::size_t>(fCache.GetRowSize(row));
  for (;;) {
    switch (fFiles[file].Append(fCache.GetRowPtr(row), count)) {
      case TempFile::AppendResult::kOk:
        return MCStatus();
      case TempFile::AppendResult::kFailed:
        return MCStatus(120021, false);
      case TempFile::AppendResult::kNameTaken:
        break;
    }
    if (fCancel.IsCancel()) return MCStatus(1, false);
    const MCStatus status = SeekFreeName(fFileNames[file]);
    if (!status.IsOK()) return status;
    fFiles[file].SetName(fFileNames[file]);
  }
}

bool BINDataPreparator::HasAnyFile() const {
  return std::any_of(fFiles.begin(), fFiles.end(),
                     [](const TempFile& file) { return file.IsBegun(); });
}

std::unique_ptr<MCBinning::BinaryRecordIterator> BINDataPreparator::OpenWhole(int file) const {
  return fFiles[static_cast<std::size_t>(file)].OpenWhole(fStoredRecords);
}

bool BINDataPreparator::IsWhole(int file, int descriptor) const {
  return fFiles[static_cast<std::size_t>(file)].IsWhole(descriptor, fStoredRecords);
}

std::ostream& BINDataPreparator::Display(std::ostream& os) const {
  MCBinning::DisplayStart(os, "BINDataPreparator");
  if (fStatus.IsOK()) {
    os << "\tStatus is OK.\n";
  } else {
    os << "\tStatus has error code " << fStatus.GetErrorCode() << '\n';
  }
  return MCBinning::DisplayEnd(os, "BINDataPreparator");
}
