#include "algorithm/binalgorithm.h"

#include "algorithm/casetotals.h"
#include "algorithm/componentversion.h"
#include "algorithm/runframe.h"
#include "algorithm/runprogress.h"
#include "common/statuscodes.h"
#include "metadata/loadedcases.h"

using MCBinning::Error;
using MCBinning::MCStatus;
using MCBinning::RunFrame;
using MCBinning::StatusCode;
using MCBinning::Warning;
using MCBinning::With;

BINAlgorithm::BINAlgorithm(BINSettings& settings, BINVarList& varList)
    : fNumCases(0),
      fNumTargetCategories(0),
      fRightBorderClosed(true),
      fNumberOfBins(0),
      fSettings(settings),
      fVarList(varList),
      fCancel(settings.GetCancelPointer()),
      fTargetIndex(fVarList.GetTargetIndex()),
      fWeightIndex(fVarList.GetWeightIndex()),
      fTuples(nullptr) {}

BINAlgorithm::~BINAlgorithm() = default;

std::string BINAlgorithm::GetComponentVersion() const {
  return MCBinning::ComponentVersion("supervised");
}

void BINAlgorithm::SetCancelPtr(MCQueryCancel* query) { fCancel.SetCancelPtr(query); }

void BINAlgorithm::Cancel() { fCancel.SetCancel(); }

void BINAlgorithm::SetProgressListener(ProgressListener* listener) {
  fSettings.SetProgressListener(listener);
}

const BINOutput& BINAlgorithm::GetBinningResults() const { return fResults; }

MCStatus BINAlgorithm::GetStatus() {
  return MCBinning::Guard([&] { return RunFrame::UnlessCancelled(*this, fStatus); });
}

const BINSettings& BINAlgorithm::GetSettings() const { return fSettings; }

const BINVarList& BINAlgorithm::GetVarList() const { return fVarList; }

void BINAlgorithm::DoCancel() { fStatus = Error(StatusCode::kCancelled); }

MCStatus BINAlgorithm::CreateBins(MCCommon::RecordIterator& records,
                                  const std::vector<int>* attributes,
                                  const std::vector<int>* targets) {
  const auto threshold = static_cast<unsigned int>(fSettings.GetNumDistinctValueThreshold());
  const bool hasLists = attributes != nullptr || targets != nullptr;
  return RunFrame::CreateBins(
      *this, records, threshold, StatusCode::kNoUsablePair,
      [&] { return !hasLists || CheckVariableIndices(attributes, targets, fPairStatuses); },
      [&] { return DoCreateBins(attributes, targets); });
}

bool BINAlgorithm::CheckVariableIndices(const std::vector<int>* attributes,
                                        const std::vector<int>* targets,
                                        std::vector<MCStatus>& statuses) {
  if (attributes == nullptr) return false;
  const std::size_t pairCount = attributes->size();
  statuses.assign(pairCount, MCStatus());
  if (targets == nullptr) {
    // The refused ones are stored with their status; only an empty list is of no use.
    for (std::size_t i = 0; i < pairCount; ++i) statuses[i] = CheckAttribute((*attributes)[i]);
    return pairCount > 0;
  }

  if (targets->size() != pairCount) return false;
  std::size_t failures = 0;
  for (std::size_t i = 0; i < pairCount; ++i) {
    statuses[i] = CheckPair((*attributes)[i], (*targets)[i]);
    if (statuses[i].IsError()) ++failures;
  }
  return failures != pairCount;
}

MCStatus BINAlgorithm::CheckPair(int attribute, int target) const {
  const IBINVariable* const targetVariable = fVarList.GetVarAt(target);
  if (fVarList.GetVarAt(attribute) == nullptr || targetVariable == nullptr) {
    return Error(StatusCode::kNoSuchVariable);
  }
  const IBINVariable::MeasureLevel level = targetVariable->GetMeasureLevel();
  if (level != IBINVariable::MeasureNumericCategorical &&
      level != IBINVariable::MeasureStringCategorical) {
    return Error(StatusCode::kTargetNotCategorical);
  }
  if (target == attribute || attribute == fWeightIndex || target == fWeightIndex) {
    return Error(StatusCode::kIsWeightOrTarget);
  }
  return MCStatus();
}

MCStatus BINAlgorithm::CheckAttribute(int attribute) const {
  if (fVarList.GetVarAt(attribute) == nullptr) return Error(StatusCode::kNoSuchAttribute);
  if (attribute == fWeightIndex || attribute == fTargetIndex)
    return Error(StatusCode::kIsWeightOrTarget);
  return MCStatus();
}

MCStatus BINAlgorithm::DoCreateBins(const std::vector<int>* attributes,
                                    const std::vector<int>* targets) {
  MCStatus result;
  MCBinning::RunProgress progress(fSettings.GetProgressListener(),
                                  fSettings.GetNSkippedAttReports());
  const auto runPair = [&](int attribute, int target) {
    result = RunAlgorithm(static_cast<unsigned int>(attribute), static_cast<unsigned int>(target));
    progress.Report(attribute, result);
  };

  if (attributes != nullptr) {
    for (std::size_t i = 0; i < attributes->size(); ++i) {
      const int attribute = (*attributes)[i];
      const int target = targets != nullptr ? (*targets)[i] : fTargetIndex;
      if (fPairStatuses[i].IsOK()) {
        runPair(attribute, target);
      } else {
        StoreRefused(fPairStatuses[i], attribute, target);
      }
    }
    return result;
  }

  bool isValid = false;
  fDataSet->IsValidTarget(fTargetIndex, isValid);
  if (!isValid) return Error(StatusCode::kTargetUnusable);
  for (int variable = 0; variable < fVarList.Size(); ++variable) {
    if (variable != fTargetIndex && variable != fWeightIndex) runPair(variable, fTargetIndex);
  }
  return result;
}

void BINAlgorithm::StoreRefused(const MCStatus& status, int attribute, int target) {
  const MCStatus stored = fResults.SetAttributeTargetResults(status, {}, {}, attribute, target, 0,
                                                             0.0, 0.0, 0.0, 0.0, 0.0);
  RunFrame::ThrowIfOutOfMemory(stored);
}

MCStatus BINAlgorithm::RunAlgorithm(unsigned int attribute, unsigned int target) {
  return RunFrame::RunOne(*this, [&] { return RunPair(attribute, target); });
}

MCStatus BINAlgorithm::RunPair(unsigned int attribute, unsigned int target) {
  MCStatus result = fDataSet->LoadAttribute(attribute, target);
  RunFrame::ThrowIfOutOfMemory(result);
  MCBinning::CaseTotals totals;
  double modelEntropy = MCMV::Missing();
  std::set<double> cuts;
  std::vector<double> counts;
  if (!result.IsError()) {
    totals = MCBinning::CaseTotals::Of(*fDataSet);
    fNumCases = fDataSet->GetNumberOfCases();
    if (fNumCases == 0) {
      result = Warning(StatusCode::kNoValidCase);
    } else {
      fNumTargetCategories = fDataSet->GetNumOfTargetCategories();
      result = Partition(cuts, counts, modelEntropy);
      RunFrame::ThrowIfOutOfMemory(result);
      if (totals.distinctValues == 1) {
        result = With(Warning(StatusCode::kOneDistinctValue), attribute);
      }
      if (fNumTargetCategories == 1) {
        result = With(Warning(StatusCode::kOneTargetCategory), target);
      }
    }
  }
  const MCStatus stored = fResults.SetAttributeTargetResults(
      result, cuts, counts, static_cast<int>(attribute), static_cast<int>(target),
      totals.distinctValues, totals.weight, totals.weightWithMissing, totals.minimum,
      totals.maximum, modelEntropy);
  RunFrame::ThrowIfOutOfMemory(stored);
  return result;
}

MCStatus BINAlgorithm::Partition(std::set<double>& cuts, std::vector<double>& counts,
                                 double& modelEntropy) {
  if (!fDataSet->NeedPreprocess()) return PartitionDistinct(cuts, counts, modelEntropy);
  std::vector<double> candidates;
  std::vector<double> unusedWeights;
  const bool areCut = MCBinning::LoadedCases::VisitSupervised(*fDataSet, [&](const auto& cases) {
    return fPreProcess->CutCases(cases, candidates, unusedWeights, fDataSet->GetTotalweight());
  });
  if (!areCut) return MCStatus();
  return PartitionCandidates(candidates, cuts, counts, modelEntropy);
}

void BINAlgorithm::Display(std::ostream& os) const { RunFrame::Display(os, "BINAlgorithm", *this); }
