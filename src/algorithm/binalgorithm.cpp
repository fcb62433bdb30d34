#include "algorithm/binalgorithm.h"

#include "algorithm/componentversion.h"
#include "algorithm/partitioner.h"
#include "algorithm/percentilecuts.h"
#include "algorithm/runframe.h"
#include "algorithm/runprogress.h"
#include "common/statuscodes.h"
#include "output/resultstore.h"

using MCBinning::Error;
using MCBinning::MCStatus;
using MCBinning::PairResult;
using MCBinning::Partitioner;
using MCBinning::PercentileCuts;
using MCBinning::ResultStore;
using MCBinning::RunFrame;
using MCBinning::StatusCode;
using MCBinning::Warning;
using MCBinning::With;

namespace {

// Why a pair cannot be binned, if it cannot.
MCStatus CheckPair(const BINVarList& variables, int attribute, int target) {
  const IBINVariable* const targetVariable = variables.GetVarAt(target);
  if (variables.GetVarAt(attribute) == nullptr || targetVariable == nullptr) {
    return Error(StatusCode::kNoSuchVariable);
  }
  const IBINVariable::MeasureLevel level = targetVariable->GetMeasureLevel();
  if (level != IBINVariable::MeasureNumericCategorical &&
      level != IBINVariable::MeasureStringCategorical) {
    return Error(StatusCode::kTargetNotCategorical);
  }
  const int weight = variables.GetWeightIndex();
  if (target == attribute || attribute == weight || target == weight) {
    return Error(StatusCode::kIsWeightOrTarget);
  }
  return MCStatus();
}

// Why an attribute cannot be binned against the list's target, if it cannot.
MCStatus CheckAgainstTarget(const BINVarList& variables, int attribute) {
  if (variables.GetVarAt(attribute) == nullptr) return Error(StatusCode::kNoSuchAttribute);
  if (attribute == variables.GetWeightIndex() || attribute == variables.GetTargetIndex()) {
    return Error(StatusCode::kIsWeightOrTarget);
  }
  return MCStatus();
}

}  // namespace

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
      fTuples(nullptr),
      fReport(std::make_unique<MCBinning::RunReport>()) {}

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
    for (std::size_t i = 0; i < pairCount; ++i) {
      statuses[i] = CheckAgainstTarget(fVarList, (*attributes)[i]);
    }
    return pairCount > 0;
  }

  if (targets->size() != pairCount) return false;
  std::size_t failures = 0;
  for (std::size_t i = 0; i < pairCount; ++i) {
    statuses[i] = CheckPair(fVarList, (*attributes)[i], (*targets)[i]);
    if (statuses[i].IsError()) ++failures;
  }
  return failures != pairCount;
}

MCStatus BINAlgorithm::DoCreateBins(const std::vector<int>* attributes,
                                    const std::vector<int>* targets) {
  MCStatus result;
  fReport->attributeCount =
      attributes != nullptr
          ? RunFrame::CountOK(fPairStatuses)
          : static_cast<unsigned long>(fVarList.Size() - (fTargetIndex >= 0) - (fWeightIndex >= 0));
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
        ResultStore::Append(
            fResults, {fPairStatuses[i], attribute, target, MCBinning::kNoTotals, {{}, {}, 0.0}});
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

MCStatus BINAlgorithm::RunAlgorithm(unsigned int attribute, unsigned int target) {
  return RunFrame::RunOne(*this, [&] {
    PairResult result{RunFrame::Load(*fDataSet, attribute, target),
                      static_cast<int>(attribute),
                      static_cast<int>(target),
                      {},
                      {}};
    if (!result.status.IsError()) {
      result.totals = RunFrame::TotalsOf(*fDataSet);
      fNumCases = fDataSet->GetNumberOfCases();
      if (fNumCases == 0) {
        result.status = Warning(StatusCode::kNoValidCase);
      } else {
        fNumTargetCategories = fDataSet->GetNumOfTargetCategories();
        const Partitioner partitioner(*fDataSet, fRightBorderClosed,
                                      fSettings.GetSmallBinDetectionThreshold());
        result.status =
            fDataSet->NeedPreprocess()
                ? partitioner.UsePercentiles(PercentileCuts(*fPreProcess), result.partition)
                : partitioner.UseDistinctValues(result.partition);
        if (result.totals.distinctValues == 1) {
          result.status = With(Warning(StatusCode::kOneDistinctValue), attribute);
        }
        if (fNumTargetCategories == 1) {
          result.status = With(Warning(StatusCode::kOneTargetCategory), target);
        }
      }
    }
    ResultStore::Append(fResults, result);
    return result.status;
  });
}

void BINAlgorithm::Display(std::ostream& os) const { RunFrame::Display(os, "BINAlgorithm", *this); }
