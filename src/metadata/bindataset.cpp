#include "metadata/bindataset.h"

#include <climits>
#include <cstddef>
#include <new>
#include <type_traits>
#include <utility>

#include "common/displayframe.h"
#include "common/guard.h"
#include "common/missing.h"
#include "common/statuscodes.h"
#include "metadata/bindatapreparator.h"
#include "metadata/binvarlist.h"
#include "metadata/pass/bintable.h"
#include "metadata/pass/casereader.h"
#include "metadata/pass/cases.h"
#include "metadata/pass/casestore.h"
#include "metadata/pass/counttable.h"

using MCBinning::CaseReader;
using MCBinning::CaseStore;
using MCBinning::CountTable;
using MCBinning::Error;
using MCBinning::Guard;
using MCBinning::MCStatus;
using MCBinning::PackedCase;
using MCBinning::StatusCode;
using MCBinning::StatusError;
using MCBinning::UnweightedCase;
using MCBinning::UnweightedEFCase;
using MCBinning::Warning;

BINDataSet::BINDataSet(MCCommon::RecordIterator& records, BINDataPreparator& preparator)
    : fNumTargetCategories(0),
      fHasWeight(false),
      fHasTarget(false),
      fRecords(records),
      fPreparator(preparator),
      fIsThresholdSet(false),
      fVarToFile(nullptr),
      fNumCases(0),
      fNumDistinctValues(0),
      fNumAllCases(0),
      fTotalWeight(0.0),
      fTotalWeightWithMissing(0.0),
      fThresholdDistinct(0),
      fNeedPreprocess(false),
      fTargetFile(0),
      fWeightFile(-1),
      fMinimum(MCMV::Missing()),
      fMaximum(MCMV::Missing()),
      fLargestTarget(0),
      fReader(std::make_unique<CaseReader>(preparator, fTargetIterator, fWeightIterator)),
      fCases(std::make_unique<CaseStore>()) {}

BINDataSet::~BINDataSet() = default;

MCStatus BINDataSet::HandleDataFile() {
  return Guard([&]() -> MCStatus {
    const MCStatus status = fPreparator.ProcessSource(fRecords);
    if (status.IsError()) return status;

    fHasWeight = fPreparator.GetVarList().GetWeightIndex() >= 0;
    fHasTarget = fPreparator.GetVarList().GetTargetIndex() >= 0;
    fNumAllCases = fPreparator.GetAllvarNumOfCases();
    // Rows of a bin table are counted in int.
    if (fNumAllCases > static_cast<unsigned long>(INT_MAX)) throw std::bad_alloc();
    fFileNames = fPreparator.GetFileNames();
    fVarToFile = &fPreparator.GetVarIndices();
    if (fHasTarget) {
      fTuples = std::make_unique<std::vector<BINDataTuple>>();
      if (fHasWeight) fTuples->reserve(fNumAllCases);
    }
    if (fHasWeight) fWeightFile = fHasTarget ? 1 : 0;
    if (!fPreparator.HasAnyFile()) return status;
    fReader->Open({fHasTarget ? static_cast<int>(fTargetFile) : CaseReader::kNoFile, fWeightFile});
    return status;
  });
}

MCStatus BINDataSet::GetAttribute(unsigned int attribute, unsigned int target,
                                  std::vector<BINDataTuple>*& tuples) {
  tuples = nullptr;
  return Guard([&] {
    Load(attribute, target);
    fCases->MakeTuples(*fTuples, fPreparator.GetAllvarNumOfCases());
    tuples = fTuples.get();
    return MCStatus();
  });
}

MCStatus BINDataSet::GetAttribute(unsigned int attribute, std::vector<EFBINDataTuple>*& tuples) {
  tuples = nullptr;
  return Guard([&] {
    Load(attribute);
    fCases->MakeTuples(*fEFTuples, fPreparator.GetAllvarNumOfCases());
    tuples = fEFTuples.get();
    return MCStatus();
  });
}

void BINDataSet::Load(unsigned int attribute, unsigned int target) {
  bool isValid = false;
  if (fTuples) IsValidTarget(static_cast<int>(target), isValid);
  if (!isValid) throw StatusError(StatusCode::kTargetUnusable);
  CheckAttribute(attribute);

  fTargetFile = static_cast<unsigned int>(GetFile(target));
  fNumTargetCategories =
      static_cast<unsigned int>(fPreparator.GetNumOfCategories()[fTargetFile]) + 1;
  const int file = GetFile(attribute);
  if (fHasWeight) {
    LoadSorted(file, *fTuples);
  } else if (!LoadPacked<PackedCase<1>>(file) && !LoadPacked<PackedCase<5>>(file)) {
    LoadSorted(file, fCases->GetUnweighted<UnweightedCase>());
  }
  if (fIsThresholdSet) {
    fNeedPreprocess = fThresholdDistinct > 0 && fNumDistinctValues > fThresholdDistinct;
  }
}

void BINDataSet::Load(unsigned int attribute) {
  CheckAttribute(attribute);
  if (fHasWeight) {
    LoadSorted(GetFile(attribute), GetEFTuples());
  } else {
    GetEFTuples();
    LoadSorted(GetFile(attribute), fCases->GetUnweighted<UnweightedEFCase>());
  }
}

std::vector<EFBINDataTuple>& BINDataSet::GetEFTuples() {
  if (!fEFTuples) fEFTuples = std::make_unique<std::vector<EFBINDataTuple>>();
  return *fEFTuples;
}

template <typename Case>
bool BINDataSet::LoadPacked(int file) {
  return fNumTargetCategories <= Case::kTargetCount &&
         LoadSorted(file, fCases->GetUnweighted<Case>());
}

template <typename Case>
bool BINDataSet::LoadSorted(int file, std::vector<Case>& cases) {
  fMinimum = fMaximum = MCMV::Missing();
  if constexpr (MCBinning::kIsPacked<Case>) {
    if (!ReadCases<Case>(file, fCases->GetLoose())) return false;
  } else {
    ReadCases<Case>(file, cases);
  }
  if (fNumCases == 0) {
    cases.clear();
    fCases->SetLoaded(cases);
    return true;
  }
  try {
    SortCases(cases);
  } catch (...) {
    fNumCases = 0;
    fTotalWeight = fTotalWeightWithMissing = 0.0;
    throw;
  }
  const CaseStore::Range range = fCases->GetRange();
  fMinimum = range.first;
  fMaximum = range.last;
  return true;
}

template <typename Case>
void BINDataSet::SortCases(std::vector<Case>& cases) {
  if (const auto distinctValues = fCases->LoadTallied(cases, fLargestTarget + 1)) {
    fNumDistinctValues = *distinctValues;
    return;
  }
  if (MCBinning::kIsCounted<Case> && HasTable() &&
      fNumTargetCategories <= CountTable::kMostCategories) {
    const bool hasMost = fIsThresholdSet && fThresholdDistinct > 0;
    fCases->GetCountTable().Begin(fNumCases, fNumTargetCategories,
                                  hasMost ? fThresholdDistinct : fNumCases);
  }
  fNumDistinctValues = fCases->LoadSorted(cases);
}

template <typename Case, typename Cases>
bool BINDataSet::ReadCases(int file, Cases& cases) {
  fNumCases = 0;
  fNumDistinctValues = 0;
  fTotalWeight = fTotalWeightWithMissing = 0.0;
  fCases->SetNoneLoaded();
  fCases->SetMissingWeights({});
  if (!fPreparator.HasAnyFile()) {
    cases.clear();
    return true;
  }
  const int targetFile =
      MCBinning::kHasTarget<Case> ? static_cast<int>(fTargetFile) : CaseReader::kNoFile;
  auto sums = fReader->Read<Case>(file, {targetFile, fWeightFile}, cases);
  if (!sums) return false;
  fNumCases = static_cast<unsigned int>(cases.size());
  fTotalWeight = sums->weight;
  fTotalWeightWithMissing = sums->weightWithMissing;
  if (MCBinning::kHasTarget<Case>) fLargestTarget = sums->largestTarget;
  fCases->SetMissingWeights(std::move(sums->missingWeights));
  return true;
}

MCStatus BINDataSet::ReadNextAttribute(unsigned int file) {
  if (file >= fFileNames.size()) return Warning(StatusCode::kNoSuchAttribute);
  return Guard([&] {
    const auto read = [&](auto& tuples) {
      ReadCases<typename std::remove_reference_t<decltype(tuples)>::value_type>(
          static_cast<int>(file), tuples);
      fCases->SetLoaded(tuples);
    };
    if (fTuples) {
      read(*fTuples);
    } else {
      read(GetEFTuples());
    }
    return MCStatus();
  });
}

MCStatus BINDataSet::CreateBinTable(const std::vector<double>* cutPoints, bool rightBorderClosed,
                                    std::vector<double>& table) {
  if (cutPoints == nullptr || cutPoints->empty() || !fTuples) {
    return Warning(StatusCode::kCutPointsMisfit);
  }
  return Guard([&] {
    return FillBinTable(*cutPoints, rightBorderClosed, table)
               ? MCStatus()
               : Warning(StatusCode::kCutPointsMisfit);
  });
}

bool BINDataSet::FillBinTable(const std::vector<double>& cutPoints, bool rightBorderClosed,
                              std::vector<double>& table) const {
  const std::size_t binCount = cutPoints.size() - 1;
  table.assign(binCount * fNumTargetCategories, 0.0);
  return binCount > 0 && HasTable() && fCases->VisitSupervised([&](const auto& cases) {
    return MCBinning::FillBinTable(cases, cutPoints, rightBorderClosed, fNumTargetCategories,
                                   table);
  });
}

// Whether every target of the loaded cases has its place in a table.
bool BINDataSet::HasTable() const { return fLargestTarget < fNumTargetCategories; }

bool BINDataSet::FillDistinctBinTable(bool rightBorderClosed) {
  return HasTable() && fCases->VisitSupervised([&](const auto& cases) {
    return !cases.empty() &&
           MCBinning::FillDistinctBinTable(cases, fNumDistinctValues, rightBorderClosed,
                                           fNumTargetCategories, fCases->GetBinTable());
  });
}

MCStatus BINDataSet::IsValidTarget(int target, bool& valid) {
  if (target < 0) return Error(StatusCode::kTargetUnusable);
  return fPreparator.IsValidTarget(GetFile(static_cast<unsigned int>(target)), valid);
}

void BINDataSet::SetThresholdDistinct(unsigned int threshold) {
  if (threshold == 0) return;
  fThresholdDistinct = threshold;
  fIsThresholdSet = true;
}

bool BINDataSet::SetNumberOfCases(unsigned long count) {
  if (count == 0) return false;
  fNumAllCases = count;
  return true;
}

void BINDataSet::CheckAttribute(unsigned int attribute) const {
  const int file = GetFile(attribute);
  if (file < 0) throw StatusError(StatusCode::kNoSuchAttribute);
  if (!fPreparator.HasStopped(file)) return;
  throw StatusError(With(Error(StatusCode::kCategoryCodeOutOfRange), file));
}

// The file position of a variable, or -1.
int BINDataSet::GetFile(unsigned int variable) const {
  return fVarToFile != nullptr && variable < fVarToFile->size() ? (*fVarToFile)[variable] : -1;
}

std::ostream& BINDataSet::Display(std::ostream& os) const {
  MCBinning::DisplayStart(os, "BINDataSet");
  os << "Number of all cases = " << fNumAllCases << '\n'
     << "Number of cases = " << fNumCases << '\n'
     << "Number of distinct values = " << fNumDistinctValues << '\n'
     << "Number of target categories = " << fNumTargetCategories << '\n'
     << "Total weight = " << fTotalWeight << '\n'
     << "Total weight with missing = " << fTotalWeightWithMissing << '\n'
     << "Minimum = " << fMinimum << '\n'
     << "Maximum = " << fMaximum << '\n';
  return MCBinning::DisplayEnd(os, "BINDataSet");
}
