#include "algorithm/efbinalgorithm.h"

#include <optional>

#include "algorithm/componentversion.h"
#include "algorithm/percentilecuts.h"
#include "algorithm/runframe.h"
#include "algorithm/runprogress.h"
#include "common/statuscodes.h"
#include "metadata/pass/loadedcases.h"
#include "output/resultstore.h"

using MCBinning::AttributeResult;
using MCBinning::Error;
using MCBinning::MCStatus;
using MCBinning::PercentileCuts;
using MCBinning::ResultStore;
using MCBinning::RunFrame;
using MCBinning::StatusCode;
using MCBinning::Warning;
using MCBinning::With;

namespace {

// Why an attribute cannot be binned, if it cannot.
MCStatus CheckRequested(const BINVarList& variables, int attribute) {
  if (variables.GetVarAt(attribute) == nullptr) return Error(StatusCode::kNoSuchAttribute);
  if (attribute == variables.GetWeightIndex()) return Error(StatusCode::kIsWeightOrTarget);
  return MCStatus();
}

}  // namespace

EFBINAlgorithm::EFBINAlgorithm(EFBINSettings& settings, BINVarList& varList)
    : fNumCases(0),
      fRightBorderClosed(true),
      fNumberOfBins(0),
      fSettings(settings),
      fVarList(varList),
      fCancel(settings.GetCancelPointer()),
      fWeightIndex(fVarList.GetWeightIndex()),
      fTuples(nullptr),
      fReport(std::make_unique<MCBinning::RunReport>()) {}

EFBINAlgorithm::~EFBINAlgorithm() = default;

std::string EFBINAlgorithm::GetComponentVersion() const {
  return MCBinning::ComponentVersion("equal-frequency");
}

void EFBINAlgorithm::SetCancelPtr(MCQueryCancel* query) { fCancel.SetCancelPtr(query); }

void EFBINAlgorithm::Cancel() { fCancel.SetCancel(); }

void EFBINAlgorithm::SetProgressListener(ProgressListener* listener) {
  fSettings.SetProgressListener(listener);
}

const EFBINOutput& EFBINAlgorithm::GetBinningResults() const { return fResults; }

MCStatus EFBINAlgorithm::GetStatus() {
  return MCBinning::Guard([&] { return RunFrame::UnlessCancelled(*this, fStatus); });
}

const EFBINSettings& EFBINAlgorithm::GetSettings() const { return fSettings; }

const BINVarList& EFBINAlgorithm::GetVarList() const { return fVarList; }

void EFBINAlgorithm::DoCancel() { fStatus = Error(StatusCode::kCancelled); }

MCStatus EFBINAlgorithm::CreateBins(MCCommon::RecordIterator& records,
                                    const std::vector<int>* attributes) {
  return RunFrame::CreateBins(
      *this, records, std::nullopt, StatusCode::kNoSuchAttribute,
      [&] { return attributes == nullptr || CheckVariableIndices(attributes, fAttributeStatuses); },
      [&] { return DoCreateBins(attributes); });
}

bool EFBINAlgorithm::CheckVariableIndices(const std::vector<int>* attributes,
                                          std::vector<MCStatus>& statuses) {
  statuses.clear();
  std::size_t failures = 0;
  for (const int attribute : *attributes) {
    statuses.push_back(CheckRequested(fVarList, attribute));
    if (statuses.back().IsError()) ++failures;
  }
  return failures != attributes->size();
}

MCStatus EFBINAlgorithm::DoCreateBins(const std::vector<int>* attributes) {
  MCStatus result;
  fReport->attributeCount = attributes != nullptr
                                ? RunFrame::CountOK(fAttributeStatuses)
                                : static_cast<unsigned long>(fVarList.Size() - (fWeightIndex >= 0));
  MCBinning::RunProgress progress(fSettings.GetProgressListener(),
                                  fSettings.GetNSkippedAttReports());
  const auto runAttribute = [&](int attribute) {
    result = RunAlgorithm(static_cast<unsigned int>(attribute));
    progress.Report(attribute, result);
  };

  if (attributes == nullptr) {
    for (int variable = 0; variable < fVarList.Size(); ++variable) {
      if (variable != fWeightIndex) runAttribute(variable);
    }
    return result;
  }
  for (std::size_t i = 0; i < attributes->size(); ++i) {
    const int attribute = (*attributes)[i];
    if (fAttributeStatuses[i].IsOK()) {
      runAttribute(attribute);
    } else {
      ResultStore::Append(fResults,
                          {fAttributeStatuses[i], attribute, MCBinning::kNoTotals, {}, {}});
    }
  }
  return result;
}

MCStatus EFBINAlgorithm::RunAlgorithm(unsigned int attribute) {
  return RunFrame::RunOne(*this, [&] {
    AttributeResult result{
        RunFrame::Load(*fDataSet, attribute), static_cast<int>(attribute), {}, {}, {}};
    if (!result.status.IsError()) {
      result.totals = RunFrame::TotalsOf(*fDataSet);
      fNumCases = fDataSet->GetNumberOfCases();
      if (fNumCases == 0) {
        result.status = Warning(StatusCode::kNoValidCase);
      } else {
        MCBinning::LoadedCases::VisitEqualFrequency(*fDataSet, [&](const auto& cases, auto* order) {
          return PercentileCuts(*fPreProcess)
              .Find(cases, result.totals.weight, result.cutPoints, result.binWeights, order);
        });
        if (result.totals.distinctValues == 1) {
          result.status = With(Warning(StatusCode::kOneDistinctValue), attribute);
        } else if (result.cutPoints.empty()) {
          result.status = With(Warning(StatusCode::kNoCutPoint), attribute);
        }
      }
    }
    ResultStore::Append(fResults, result);
    return result.status;
  });
}

void EFBINAlgorithm::Display(std::ostream& os) const {
  RunFrame::Display(os, "EFBINAlgorithm", *this);
}
