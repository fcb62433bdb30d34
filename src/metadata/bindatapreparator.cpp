#include "metadata/bindatapreparator.h"

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <limits>
#include <new>
#include <utility>

#include "common/bincancelinfo.h"
#include "common/displayframe.h"
#include "common/exactarithmetic.h"
#include "common/guard.h"
#include "common/runreport.h"
#include "common/statuscodes.h"
#include "metadata/binroundencoder.h"
#include "metadata/binvarlist.h"
#include "metadata/columnrecorditerator.h"
#include "metadata/pass/passprogress.h"
#include "metadata/pass/recordbuffer.h"
#include "metadata/pass/recordpreparer.h"
#include "metadata/pass/tempfiles.h"

using MCBinning::BlockPart;
using MCBinning::ColumnRecordIterator;
using MCBinning::Error;
using MCBinning::Guard;
using MCBinning::MCStatus;
using MCBinning::PassProgress;
using MCBinning::RecordBlock;
using MCBinning::RecordBuffer;
using MCBinning::RecordPreparer;
using MCBinning::RecordSlots;
using MCBinning::RunReport;
using MCBinning::StatusCode;
using MCBinning::StatusError;
using MCBinning::TempFiles;

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

// The same object, when it hands out columns. Before the table of a class's virtual functions
// stands where its type is described, and nothing there when it was compiled with -fno-rtti:
// dynamic_cast would follow that.
ColumnRecordIterator* AsColumns(MCCommon::RecordIterator& source) {
  const void* const* virtualTable = nullptr;
  std::memcpy(&virtualTable, static_cast<const void*>(&source), sizeof virtualTable);
  return virtualTable[-1] != nullptr ? dynamic_cast<ColumnRecordIterator*>(&source) : nullptr;
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
      fIsComplete(true),
      fOwnReport(std::make_unique<RunReport>()),
      fReport(nullptr) {
  fProcRecSize = fNumAttributes + static_cast<unsigned int>(fHasTarget + fHasWeight);
  // A list that names no file for some variable is refused later; until then every position
  // that one of its variables leads to exists.
  const std::size_t fileCount = std::max({fOrigRecSize, fProcRecSize, 1U});
  fLargestCode.assign(fileCount, 0);
  fUsable.assign(fileCount, true);
  fBuffer = std::make_unique<RecordBuffer>(fCache, fOrigRecSize);
  fPreparer = std::make_unique<RecordPreparer>(variables, fLargestCode, fUsable, *fBuffer);
  ReportTo(*fOwnReport);
  for (int index = 0; index < variables.Size(); ++index) MapVariable(index);
}

BINDataPreparator::~BINDataPreparator() = default;

void BINDataPreparator::ReportTo(RunReport& report) {
  fReport = &report;
  fPreparer->ReportTo(report);
}

void BINDataPreparator::MapVariable(int index) {
  const IBINVariable& variable = *std::as_const(fVarList).GetVarAt(index);
  fUserMissing.push_back(variable.GetUserMissingInfo());
  fMeasureLevels.push_back(variable.GetMeasureLevel());
  fRoles.push_back(fVarList.GetVariableRole(index));

  const auto position = static_cast<std::size_t>(index);
  int file = -1;
  switch (fRoles.back()) {
    case IBINVariable::RoleAttribute:
      file = static_cast<int>(fAttributes.size()) + fHasTarget + fHasWeight;
      fAttributes.push_back(index);
      fPreparer->AddAttribute(position, static_cast<std::size_t>(file), variable);
      break;
    case IBINVariable::RoleTarget:
      file = 0;
      fTargetPosition = index;
      fPreparer->SetTarget(position);
      break;
    case IBINVariable::RoleFrequencyWeight:
      file = fHasTarget;
      fWeightPosition = index;
      fWeightPresent = 1;
      fWeightEncoder = dynamic_cast<const BINRoundEncoder*>(variable.GetEncoder());
      fPreparer->SetWeight(position, static_cast<std::size_t>(file), fWeightEncoder);
      break;
    case IBINVariable::RoleUndefined:
      break;
  }
  fVarToFile.push_back(file);
}

void BINDataPreparator::CheckRoles() const {
  const std::pair<int, IBINVariable::VariableRole> named[] = {
      {fVarList.GetTargetIndex(), IBINVariable::RoleTarget},
      {fVarList.GetWeightIndex(), IBINVariable::RoleFrequencyWeight}};
  for (const auto& [index, role] : named) {
    if (index < 0 || fVarList.GetVariableRole(index) == role) continue;
    MCStatus status = Error(StatusCode::kInvalidVariableList);
    status.SetDiscreteDatum(1, index);
    throw StatusError(status);
  }
}

MCStatus BINDataPreparator::ProcessSource(MCCommon::RecordIterator& source) {
  const auto wholePass = [&]() -> MCStatus {
    const auto setUp = [&] {
      NameFiles();
      CheckRoles();
      return MCStatus();
    };
    fStatus = Guard(setUp, fReport);
    if (!fStatus.IsOK()) return fStatus;

    if (ColumnRecordIterator* const columns = AsColumns(source)) {
      ReadBlocks(*columns);
    } else {
      ReadRecords(source);
    }
    fIsComplete = FinishLastTransfer();
    fBuffer->Release();
    if (fStoredRecords == 0) return Error(StatusCode::kNoData);
    if (fCancel.IsCancel()) return fStatus = Error(StatusCode::kCancelled);
    MarkUndeclaredCategories();
    return fStatus;
  };
  return Guard(wholePass, fReport);
}

void BINDataPreparator::ReadRecords(MCCommon::RecordIterator& source) {
  PassProgress progress(fProgressListener, fProgressInterval);
  MCStatus warning;  // its lasting effect is that the variable is not usable
  const MCCommon::Record* lastSeen = nullptr;

  while (source.HasMore() && !fCancel.IsCancel()) {
    const MCCommon::Record* const record = source.Next();
    ++fReport->recordsRead;
    if (record == nullptr) {
      ++fReport->nullRecords;
    } else {
      // A record keeps its size, and most iterators have one record.
      if (record != lastSeen) RequireWhole(record->Size());
      lastSeen = record;
      fSkipRecord = !fPreparer->Prepare(*record, fBuffer->GetNextSlots(), warning);
      if (!fSkipRecord) StorePrepared(1);
    }
    progress.Add(1, record != nullptr ? 1 : 0);
  }
}

// A block goes in parts, which end where the buffer is full, where a report is due and where there
// is something to say about a record: that record is a part of its own. So all of that happens as
// if the records had come one by one.
//
// A part that fills the empty buffer at once goes to the files column by column: then no more than
// a row of the buffer is touched for all attributes, which stays in the nearest caches.
void BINDataPreparator::ReadBlocks(ColumnRecordIterator& source) {
  const auto storePart = [this](const BlockPart& part) {
    const RecordSlots slots = fBuffer->GetNextSlots();
    const std::size_t count = fPreparer->PrepareWeightsAndTargets(part, slots);
    if (!fBuffer->IsFilledBy(count)) {
      if (count > 0) fPreparer->PrepareAttributes(part, slots);
      StorePrepared(count);
      return;
    }
    const std::size_t firstAttribute = fPreparer->GetFirstAttributeFile();
    fReport->recordsStored = fStoredRecords += count - 1;
    fBuffer->Transfer(*fFiles, [&](std::size_t file) {
      double* const values = &slots[std::min(file, firstAttribute)];
      return file < firstAttribute ? values : fPreparer->PrepareAttribute(part, file, values);
    });
    fReport->recordsStored = ++fStoredRecords;
  };

  PassProgress progress(fProgressListener, fProgressInterval);
  while (source.HasMore() && !fCancel.IsCancel()) {
    const RecordBlock block = source.TakeBlock();
    ++fReport->recordsRead;  // for the answer to a block that has too few columns
    RequireWhole(block.columnCount);
    --fReport->recordsRead;
    std::size_t partSize = 0;
    for (std::size_t first = 0; first < block.recordCount; first += partSize) {
      partSize = std::min(block.recordCount - first, fBuffer->GetRoom());
      if (progress.GetRecordsLeft() > 0) partSize = std::min(partSize, progress.GetRecordsLeft());
      const BlockPart most{block.columns, first, partSize};
      partSize = std::max<std::size_t>(fPreparer->CountUnremarkable(most), 1);
      fReport->recordsRead += partSize;
      storePart({block.columns, first, partSize});
      progress.Add(partSize, partSize);
    }
  }
}

// Keeps the records in the next slots of the buffer. The last one is stored when it could be
// written.
void BINDataPreparator::StorePrepared(std::size_t count) {
  if (count == 0) return;
  fBuffer->Store(count);
  fReport->recordsStored = fStoredRecords += count - 1;
  if (fBuffer->IsFull()) fBuffer->Transfer(*fFiles);
  fReport->recordsStored = ++fStoredRecords;
}

// Datum 1 is the first variable that the record has no value for.
void BINDataPreparator::RequireWhole(std::size_t valueCount) {
  if (valueCount >= fOrigRecSize) return;
  fReport->shortRecord = fReport->recordsRead;
  MCStatus status = Error(StatusCode::kInvalidVariableList);
  status.SetDiscreteDatum(1, static_cast<long>(valueCount));
  throw StatusError(status);
}

// A failure here is no error of the pass: the attributes whose files end short are refused one by
// one. False then.
bool BINDataPreparator::FinishLastTransfer() {
  try {
    fBuffer->Transfer(*fFiles);
    return true;
  } catch (const StatusError&) {
    return false;
  }
}

MCStatus BINDataPreparator::ProcessRecord(const MCCommon::Record& in, MCCommon::Record& out) {
  return Guard([&] {
    std::vector<double> values(fUsable.size());
    MCStatus warning;
    const MCStatus error = Guard([&] {
      fSkipRecord = !fPreparer->Prepare(in, {values.data(), 1}, warning);
      return MCStatus();
    });
    const std::size_t slotCount = out.Size();
    for (std::size_t slot = 0; slot < slotCount; ++slot) {
      out[slot] = slot < fProcRecSize ? values[slot] : 0.0;
    }
    return error.IsError() ? error : warning;
  });
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
  if (file < 0 || static_cast<unsigned int>(file) >= fOrigRecSize)
    return Error(StatusCode::kNoSuchVariable);
  valid = fUsable[static_cast<std::size_t>(file)];
  return MCStatus();
}

MCStatus BINDataPreparator::SetUpTempFiles() {
  return Guard([&] {
    NameFiles();
    return MCStatus();
  });
}

void BINDataPreparator::NameFiles() {
  SizeBuffer();
  fFiles.reset();
  fFileNames.assign(fProcRecSize, std::string());
  if (!fTempDirName.empty() && fTempDirName.back() != '\\' && fTempDirName.back() != '/') {
    fTempDirName += '/';
  }
  RequireFileForEachVariable(fOrigRecSize <= fProcRecSize);
  fFiles = std::make_unique<TempFiles>(fTempDirName, fFileNames, fOrigRecSize, fCancel, *fReport);
}

// Half the capacity will do where memory is short.
void BINDataPreparator::SizeBuffer() {
  const int rows = static_cast<int>(fProcRecSize);
  try {
    fBuffer->Size(rows, fCacheCapacity);
  } catch (const std::bad_alloc&) {
    fCacheCapacity /= 2;
    fBuffer->Size(rows, fCacheCapacity);
  }
}

MCStatus BINDataPreparator::TransferData() {
  return Guard([&] {
    if (fFiles) fBuffer->Transfer(*fFiles);
    return MCStatus();
  });
}

bool BINDataPreparator::HasStopped(int file) const {
  return fPreparer->HasStopped(static_cast<std::size_t>(file));
}

bool BINDataPreparator::HasAnyFile() const { return fFiles && fFiles->HasAny(); }

std::unique_ptr<MCBinning::BinaryRecordIterator> BINDataPreparator::OpenWhole(int file) const {
  auto values = fFiles->OpenWhole(static_cast<std::size_t>(file), fStoredRecords);
  if (!values && !HasStopped(file)) fFiles->NoteFailed(static_cast<std::size_t>(file));
  return values;
}

bool BINDataPreparator::IsWhole(int file, int descriptor) const {
  const bool isWhole = fFiles->IsWhole(static_cast<std::size_t>(file), descriptor, fStoredRecords);
  if (!isWhole && !HasStopped(file)) fFiles->NoteFailed(static_cast<std::size_t>(file));
  return isWhole;
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
