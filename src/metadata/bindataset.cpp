#include "metadata/bindataset.h"

#include <algorithm>
#include <cfloat>
#include <climits>

#include "common/displayframe.h"
#include "common/guard.h"
#include "common/missing.h"
#include "metadata/bindatapreparator.h"
#include "metadata/binvarlist.h"
#include "metadata/casebuffers.h"
#include "metadata/casecollector.h"
#include "metadata/loadedcases.h"

using MCBinning::BinaryRecordIterator;
using MCBinning::MCStatus;

namespace {

// The block of a file read in step with another, or null when it is not as long.
const double* NextInStep(BinaryRecordIterator& iterator, std::size_t count) {
  const BinaryRecordIterator::Block block = iterator.NextBlock();
  return block.count == count ? block.values : nullptr;
}

template <typename Case>
unsigned int CountDistinct(const std::vector<Case>& sorted) {
  unsigned int count = sorted.empty() ? 0 : 1;
  for (std::size_t i = 1; i < sorted.size(); ++i) {
    if (sorted[i].value != sorted[i - 1].value) ++count;
  }
  return count;
}

}  // namespace

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
      fBuffers(std::make_unique<MCBinning::CaseBuffers>()),
      fAreTuples(true) {}

BINDataSet::~BINDataSet() = default;

MCStatus BINDataSet::HandleDataFile() {
  return MCBinning::Guard([&]() -> MCStatus {
    const MCStatus status = fPreparator.ProcessSource(fRecords);
    if (status.IsError()) return status;

    fHasWeight = fPreparator.GetVarList().GetWeightIndex() >= 0;
    fHasTarget = fPreparator.GetVarList().GetTargetIndex() >= 0;
    fNumAllCases = fPreparator.GetAllvarNumOfCases();
    // Rows of a bin table are counted in int.
    if (fNumAllCases > static_cast<unsigned long>(INT_MAX)) return MCStatus(3, false);
    fFileNames = fPreparator.GetFileNames();
    fVarToFile = &fPreparator.GetVarIndices();
    if (fHasTarget) {
      fTuples = std::make_unique<std::vector<BINDataTuple>>();
      if (fHasWeight) fTuples->reserve(fNumAllCases);
    }
    if (!fPreparator.HasAnyFile()) return status;

    // A file that cannot be opened now is tried again with each attribute.
    int file = 0;
    fBuffers->GetTargets().clear();
    if (fHasTarget) {
      fTargetFile = 0;
      IsReady(file++, fTargetIterator);
    }
    if (fHasWeight) {
      fWeightFile = file;
      IsReady(file, fWeightIterator);
    }
    return status;
  });
}

MCStatus BINDataSet::GetAttribute(unsigned int attribute, unsigned int target,
                                  std::vector<BINDataTuple>*& tuples) {
  tuples = nullptr;
  return MCBinning::Guard([&]() -> MCStatus {
    const MCStatus status = LoadAttribute(attribute, target);
    if (!status.IsOK()) return status;
    MakeTuples(*fTuples);
    tuples = fTuples.get();
    return status;
  });
}

MCStatus BINDataSet::GetAttribute(unsigned int attribute, std::vector<EFBINDataTuple>*& tuples) {
  tuples = nullptr;
  return MCBinning::Guard([&]() -> MCStatus {
    const MCStatus status = LoadAttribute(attribute);
    if (!status.IsOK()) return status;
    MakeTuples(*fEFTuples);
    tuples = fEFTuples.get();
    return status;
  });
}

MCStatus BINDataSet::LoadAttribute(unsigned int attribute, unsigned int target) {
  return MCBinning::Guard([&]() -> MCStatus {
    bool isValid = false;
    if (fTuples) IsValidTarget(static_cast<int>(target), isValid);
    if (!isValid) return MCStatus(120010, false);
    MCStatus status = CheckAttribute(attribute);
    if (status.IsError()) return status;

    const auto targetFile = static_cast<unsigned int>(GetFile(target));
    fNumTargetCategories =
        static_cast<unsigned int>(fPreparator.GetNumOfCategories()[targetFile]) + 1;
    if (targetFile != fTargetFile) {
      fTargetIterator.reset();
      fTargetFile = targetFile;
      fBuffers->GetTargets().clear();
    }

    status = LoadSorted(attribute, *fTuples);
    if (status.IsOK() && fIsThresholdSet) {
      fNeedPreprocess = fThresholdDistinct > 0 && fNumDistinctValues > fThresholdDistinct;
    }
    return status;
  });
}

MCStatus BINDataSet::LoadAttribute(unsigned int attribute) {
  return MCBinning::Guard([&]() -> MCStatus {
    const MCStatus status = CheckAttribute(attribute);
    if (status.IsError()) return status;
    if (!fEFTuples) fEFTuples = std::make_unique<std::vector<EFBINDataTuple>>();
    return LoadSorted(attribute, *fEFTuples);
  });
}

template <typename Tuple>
MCStatus BINDataSet::LoadSorted(unsigned int attribute, std::vector<Tuple>& tuples) {
  fAreTuples = fHasWeight;
  return fAreTuples ? SortAndSummarise(attribute, tuples)
                    : SortAndSummarise(attribute, fBuffers->GetUnweighted(tuples));
}

template <typename Case>
MCStatus BINDataSet::SortAndSummarise(unsigned int attribute, std::vector<Case>& cases) {
  fMinimum = fMaximum = MCMV::Missing();
  const MCStatus status = ReadCases(static_cast<unsigned int>(GetFile(attribute)), cases);
  if (!status.IsOK()) cases.clear();
  if (cases.empty()) return status;
  fBuffers->Sort(cases);
  fNumDistinctValues = CountDistinct(cases);
  fMinimum = cases.front().value;
  fMaximum = cases.back().value;
  return status;
}

template <typename Tuple>
void BINDataSet::MakeTuples(std::vector<Tuple>& tuples) {
  if (fAreTuples) return;
  const auto& cases = fBuffers->GetUnweighted(tuples);
  tuples.reserve(fPreparator.GetAllvarNumOfCases());
  tuples.resize(cases.size());
  std::transform(cases.begin(), cases.end(), tuples.begin(),
                 [](const auto& item) { return MCBinning::ToTuple(item); });
  fAreTuples = true;
}

MCStatus BINDataSet::ReadNextAttribute(unsigned int file) {
  return MCBinning::Guard([&]() -> MCStatus {
    if (file >= fFileNames.size()) return MCStatus(120011, true);
    fAreTuples = true;
    const auto read = [&](auto& tuples) {
      const MCStatus status = ReadCases(file, tuples);
      if (!status.IsOK()) tuples.clear();
      return status;
    };
    if (fTuples) return read(*fTuples);
    if (!fEFTuples) fEFTuples = std::make_unique<std::vector<EFBINDataTuple>>();
    return read(*fEFTuples);
  });
}

template <typename Case>
MCStatus BINDataSet::ReadCases(unsigned int file, std::vector<Case>& cases) {
  using Collector = MCBinning::CaseCollector<Case>;
  fNumCases = 0;
  fNumDistinctValues = 0;
  fTotalWeight = 0.0;
  fTotalWeightWithMissing = 0.0;
  if (!MCBinning::kHasTarget<Case> && fTuples) {
    // A bin table is of the attribute loaded last, or there is none.
    fTuples->clear();
    fBuffers->GetUnweighted(*fTuples).clear();
  }
  if (!fPreparator.HasAnyFile()) {
    cases.clear();
    return MCStatus();
  }

  const MCStatus notWhole(120021, false);
  FileIterator values;
  if (!IsReady(static_cast<int>(file), values)) return notWhole;
  if (MCBinning::kHasTarget<Case>) {
    if (!IsReady(static_cast<int>(fTargetFile), fTargetIterator) || !ReadTargets()) return notWhole;
  }
  if (fHasWeight) {
    if (!IsReady(fWeightFile, fWeightIterator)) return notWhole;
    fWeightIterator->NewPass();
  }

  cases.resize(fPreparator.GetAllvarNumOfCases());
  Collector collector(cases.data());
  std::size_t casesRead = 0;
  while (values->HasMore()) {
    const BinaryRecordIterator::Block block = values->NextBlock();
    const double* const weights = fHasWeight ? NextInStep(*fWeightIterator, block.count) : nullptr;
    if (fHasWeight && weights == nullptr) break;
    if (block.count > cases.size() - casesRead) break;  // has grown since it was looked at
    const std::uint16_t* const targets =
        MCBinning::kHasTarget<Case> ? fBuffers->GetTargets().data() + casesRead : nullptr;
    collector.Add(targets, weights, block.values, block.count);
    casesRead += block.count;
  }
  if (casesRead != cases.size()) return notWhole;  // a read failed half-way

  cases.resize(collector.GetCount());
  fNumCases = static_cast<unsigned int>(collector.GetCount());
  fTotalWeight = collector.GetTotalWeight();
  fTotalWeightWithMissing = collector.GetTotalWeightWithMissing();
  if (MCBinning::kHasTarget<Case>) fLargestTarget = collector.GetLargestTarget();
  return MCStatus();
}

// Keeps the target for all attributes. False when a read failed half-way.
bool BINDataSet::ReadTargets() {
  std::vector<std::uint16_t>& targets = fBuffers->GetTargets();
  const std::size_t caseCount = fPreparator.GetAllvarNumOfCases();
  if (targets.size() == caseCount) return true;
  targets.clear();
  targets.reserve(caseCount);
  const double missing = MCMV::Missing();
  fTargetIterator->NewPass();
  while (fTargetIterator->HasMore()) {
    const BinaryRecordIterator::Block block = fTargetIterator->NextBlock();
    for (std::size_t i = 0; i < block.count; ++i) {
      targets.push_back(MCBinning::ToTarget(block.values[i], missing));
    }
  }
  return targets.size() == caseCount;
}

MCStatus BINDataSet::CreateBinTable(const std::vector<double>* cutPoints, bool rightBorderClosed,
                                    std::vector<double>& table) {
  const MCStatus misfit(120002, true);
  if (cutPoints == nullptr || cutPoints->empty() || !fTuples) return misfit;
  return MCBinning::Guard([&]() -> MCStatus {
    const std::size_t binCount = cutPoints->size() - 1;
    const std::size_t categoryCount = fNumTargetCategories;
    table.assign(binCount * categoryCount, 0.0);
    if (binCount == 0 || fLargestTarget >= categoryCount) return misfit;

    const double* upper = cutPoints->data() + 1;
    const double* const beyondLast = cutPoints->data() + cutPoints->size();
    double* bin = table.data();
    // Written so that a NaN closes every bin.
    const auto isAbove = [&](double value) {
      return rightBorderClosed ? !(value <= *upper) : !(value < *upper);
    };
    MCBinning::LoadedCases::VisitSupervised(*this, [&](const auto& cases) {
      for (const auto& item : cases) {
        while (isAbove(item.value)) {
          bin += categoryCount;
          if (++upper == beyondLast) return;
        }
        bin[item.target] += item.weight;
      }
    });
    if (upper == beyondLast) return misfit;
    if (upper + 1 == beyondLast) return MCStatus();
    std::fill_n(bin, categoryCount, 0.0);  // only closed bins are kept
    return misfit;
  });
}

MCStatus BINDataSet::CreateDistinctBinTable(bool rightBorderClosed, std::vector<double>& boundaries,
                                            std::vector<double>& table) {
  const MCStatus misfit(120002, true);
  const std::size_t categoryCount = fNumTargetCategories;
  if (!fTuples || fNumDistinctValues == 0 || fLargestTarget >= categoryCount) return misfit;
  const bool hasCases = MCBinning::LoadedCases::VisitSupervised(
      *this, [](const auto& cases) { return !cases.empty(); });
  if (!hasCases) return misfit;
  // Nothing lies above the last value, and a NaN comes last.
  if (rightBorderClosed ? !(fMaximum <= DBL_MAX) : !(fMaximum < DBL_MAX)) return misfit;
  return MCBinning::Guard([&]() -> MCStatus {
    boundaries.assign(fNumDistinctValues, 0.0);
    table.assign(fNumDistinctValues * categoryCount, 0.0);
    double* boundary = boundaries.data();
    double* bin = table.data();
    *boundary = fMinimum;
    MCBinning::LoadedCases::VisitSupervised(*this, [&](const auto& cases) {
      for (const auto& item : cases) {
        if (item.value != *boundary) {
          *++boundary = item.value;
          bin += categoryCount;
        }
        bin[item.target] += item.weight;
      }
    });
    if (rightBorderClosed) {
      boundaries.back() = DBL_MAX;
    } else {
      boundaries.front() = -DBL_MAX;
    }
    return MCStatus();
  });
}

MCStatus BINDataSet::IsValidTarget(int target, bool& valid) {
  if (target < 0) return MCStatus(120010, false);
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

MCStatus BINDataSet::CheckAttribute(unsigned int attribute) const {
  const int file = GetFile(attribute);
  if (file < 0) return MCStatus(120011, false);
  if (!fPreparator.HasStopped(file)) return MCStatus();
  MCStatus status(120012, false);
  status.SetDiscreteDatum(0, file);
  return status;
}

// The file position of a variable, or -1.
int BINDataSet::GetFile(unsigned int variable) const {
  return fVarToFile != nullptr && variable < fVarToFile->size() ? (*fVarToFile)[variable] : -1;
}

// Opens the file unless it is open already. False when it does not hold a value per record.
bool BINDataSet::IsReady(int file, FileIterator& iterator) const {
  if (iterator) return fPreparator.IsWhole(file, iterator->GetFileDescriptor());
  iterator = fPreparator.OpenWhole(file);
  return iterator != nullptr;
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
