#include "algorithm/efbinalgorithm.h"

#include <optional>

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

EFBINAlgorithm::EFBINAlgorithm(EFBINSettings& settings, BINVarList& varList)
    : fNumCases(0),
      fRightBorderClosed(true),
      fNumberOfBins(0),
      fSettings(settings),
      fVarList(varList),
      fCancel(settings.GetCancelPointer()),
      fWeightIndex(fVarList.GetWeightIndex()),
      fTuples(nullptr) {}

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
    statuses.push_back(CheckAttribute(attribute));
    if (statuses.back().IsError()) ++failures;
  }
  return failures != attributes->size();
}

MCStatus EFBINAlgorithm::CheckAttribute(int attribute) const {
  if (fVarList.GetVarAt(attribute) == nullptr) return Error(StatusCode::kNoSuchAttribute);
  if (attribute == fWeightIndex) return Error(StatusCode::kIsWeightOrTarget);
  return MCStatus();
}

MCStatus EFBINAlgorithm::DoCreateBins(const std::vector<int>* attributes) {
  MCStatus result;
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
      RunFrame::ThrowIfOutOfMemory(fResults.SetAttributeResults(fAttributeStatuses[i], {}, {},
                                                                attribute, 0, 0.0, 0.0, 0.0, 0.0));
    }
  }
  return result;
}

MCStatus EFBINAlgorithm::RunAlgorithm(unsigned int attribute) {
  return RunFrame::RunOne(*this, [&] { return BinAttribute(attribute); });
}

MCStatus EFBINAlgorithm::BinAttribute(unsigned int attribute) {
  MCStatus result = fDataSet->LoadAttribute(attribute);
  RunFrame::ThrowIfOutOfMemory(result);
  MCBinning::CaseTotals totals;
  std::vector<double> cutPoints;
  std::vector<double> binWeights;
  if (!result.IsError()) {
    totals = MCBinning::CaseTotals::Of(*fDataSet);
    fNumCases = fDataSet->GetNumberOfCases();
    if (fNumCases == 0) {
      result = Warning(StatusCode::kNoValidCase);
    } else {
      MCBinning::LoadedCases::VisitEqualFrequency(*fDataSet, [&](const auto& cases) {
        return fPreProcess->CutCases(cases, cutPoints, binWeights, totals.weight);
      });
      const bool isConstant = totals.distinctValues == 1;
      if (isConstant || cutPoints.empty()) {
        result = With(Warning(isConstant ? StatusCode::kOneDistinctValue : StatusCode::kNoCutPoint),
                      attribute);
      }
    }
  }
  RunFrame::ThrowIfOutOfMemory(fResults.SetAttributeResults(
      result, cutPoints, binWeights, static_cast<int>(attribute), totals.distinctValues,
      totals.weight, totals.weightWithMissing, totals.minimum, totals.maximum));
  return result;
}

void EFBINAlgorithm::Display(std::ostream& os) const {
  RunFrame::Display(os, "EFBINAlgorithm", *this);
}
