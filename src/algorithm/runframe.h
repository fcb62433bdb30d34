#pragma once

#include <algorithm>
#include <memory>
#include <optional>
#include <ostream>
#include <utility>
#include <vector>

#include "algorithm/binefpreprocess.h"
#include "common/display.h"
#include "common/displayframe.h"
#include "common/guard.h"
#include "common/mcstatus.h"
#include "common/runreport.h"
#include "common/statuscodes.h"
#include "host/recorditerator.h"
#include "metadata/bindatapreparator.h"
#include "metadata/bindataset.h"
#include "metadata/pass/loadedcases.h"
#include "output/resultstore.h"

namespace MCBinning {

// What the runs of both algorithms have in common: the data pass, cancellation, and which
// status comes out. `Algorithm` is BINAlgorithm or EFBINAlgorithm, whose members bear the
// same names.
class RunFrame {
 public:
  // A whole CreateBins: `checkIndices` says whether the index lists can be used, `run` bins.
  // With index lists refused the answer is error `refusal`.
  template <typename Algorithm, typename CheckIndices, typename Run>
  static MCStatus CreateBins(Algorithm& algorithm, MCCommon::RecordIterator& records,
                             std::optional<unsigned int> distinctThreshold, StatusCode refusal,
                             const CheckIndices& checkIndices, const Run& run) {
    RunReport& report = *algorithm.fReport;
    report.phase = RunPhase::kNotStarted;
    report.attributeCount = report.attributesDone = 0;
    report.isHostException = false;
    report.exceptionText.clear();
    report.tempFile.clear();
    report.systemError = 0;
    const auto wholeRun = [&]() -> MCStatus {
      algorithm.fNumberOfBins = algorithm.fSettings.GetNumberOfBins();
      if (algorithm.fNumberOfBins <= 0) return Error(StatusCode::kNumberOfBinsNotSet);
      if (!checkIndices()) return Error(refusal);

      MCStatus result;
      if (!algorithm.fCancel.IsCancel()) {
        result = OpenDataPass(algorithm, records, distinctThreshold);
        if (result.IsError()) return result;
        algorithm.fPreProcess = std::make_unique<BINEFPreProcess>(algorithm.fNumberOfBins,
                                                                  algorithm.fRightBorderClosed);
        report.phase = RunPhase::kBinning;
        result = run();
        algorithm.fPreProcess.reset();
      }
      if (!algorithm.fStatus.IsOK()) result = Warning(StatusCode::kSomeResultNotOK);
      return UnlessCancelled(algorithm, result);
    };
    const MCStatus status = Guard(wholeRun, &report);
    report.isCancelled = algorithm.fCancel.WasCancelled();
    if (!status.IsError()) report.phase = RunPhase::kFinished;
    return status;
  }

  static unsigned long CountOK(const std::vector<MCStatus>& statuses) {
    return static_cast<unsigned long>(std::count_if(
        statuses.begin(), statuses.end(), [](const MCStatus& status) { return status.IsOK(); }));
  }

  template <typename Algorithm>
  static const RunReport& ReportOf(const Algorithm& algorithm) {
    return *algorithm.fReport;
  }

  // One attribute: `bin` loads, bins and stores it.
  template <typename Algorithm, typename Bin>
  static MCStatus RunOne(Algorithm& algorithm, const Bin& bin) {
    MCStatus result;
    if (!algorithm.fCancel.IsCancel()) {
      result = bin();
      if (!result.IsOK()) algorithm.fStatus = result;
      ++algorithm.fReport->attributesDone;
    }
    return UnlessCancelled(algorithm, result);
  }

  static CaseTotals TotalsOf(const BINDataSet& dataSet) {
    return {dataSet.GetNumDistinctValues(),
            dataSet.GetTotalweight(),
            dataSet.GetTotalWeightWithMissing(),
            dataSet.GetMinimum(),
            dataSet.GetMaximum(),
            LoadedCases::GetMissingWeights(dataSet)};
  }

  // Loads an attribute, against a target or without one. Memory that ran out ends the run; anything
  // else is the attribute's own affair.
  template <typename... Indices>
  static MCStatus Load(BINDataSet& dataSet, Indices... indices) {
    try {
      LoadedCases::Load(dataSet, indices...);
      return MCStatus();
    } catch (const StatusError& error) {
      return error.GetStatus();
    }
  }

  template <typename Algorithm>
  static MCStatus UnlessCancelled(Algorithm& algorithm, const MCStatus& result) {
    if (!algorithm.fCancel.IsCancel()) return result;
    algorithm.DoCancel();
    return algorithm.fStatus;
  }

  template <typename Algorithm>
  static void Display(std::ostream& os, const char* className, const Algorithm& algorithm) {
    DisplayStart(os, className);
    os << algorithm.GetComponentVersion() << '\n'
       << "Number of cases = " << algorithm.fNumCases << '\n'
       << "Right border closed = " << algorithm.fRightBorderClosed << '\n'
       << "Number of bins = " << algorithm.fNumberOfBins << '\n'
       << "Weight index = " << algorithm.fWeightIndex << '\n'
       << "Status code = " << algorithm.fStatus.GetErrorCode() << '\n';
    algorithm.fSettings.Display(os);
    algorithm.fVarList.Display(os);
    algorithm.fCancel.Display(os);
    if (algorithm.fPreparator) {
      algorithm.fPreparator->Display(os);
      DisplayMI(os, "File positions of variables, largest category codes of files",
                std::vector<std::vector<int>>{algorithm.fPreparator->GetVarIndices(),
                                              algorithm.fPreparator->GetNumOfCategories()});
    }
    if (algorithm.fDataSet) {
      const BINDataSet& dataSet = *algorithm.fDataSet;
      dataSet.Display(os);
      DisplayD(os, "Range of the attribute loaded last",
               {dataSet.GetMinimum(), dataSet.GetMaximum()});
      DisplayB(os, "Is it pre-binned", {dataSet.NeedPreprocess()});
    }
    algorithm.fResults.Display(os);
    DisplayEnd(os, className);
  }

 private:
  // Reads the records unless an earlier run has. A pass that failed leaves nothing behind, and one
  // that could not write all it had to is forgotten with the run it was made for.
  template <typename Algorithm>
  static MCStatus OpenDataPass(Algorithm& algorithm, MCCommon::RecordIterator& records,
                               std::optional<unsigned int> distinctThreshold) {
    if (algorithm.fPreparator && algorithm.fPreparator->IsComplete()) return MCStatus();
    algorithm.fDataSet.reset();
    algorithm.fPreparator.reset();
    *algorithm.fReport = RunReport();
    algorithm.fReport->phase = RunPhase::kReading;
    if (!records.HasMore()) return Error(StatusCode::kNoData);

    auto& settings = algorithm.fSettings;
    auto preparator = std::make_unique<BINDataPreparator>(
        algorithm.fVarList, algorithm.fCancel, settings.GetTempDirName(),
        settings.GetProgressListener(), settings.GetNSkippedCasesReports());
    preparator->ReportTo(*algorithm.fReport);
    auto dataSet = std::make_unique<BINDataSet>(records, *preparator);
    if (distinctThreshold) dataSet->SetThresholdDistinct(*distinctThreshold);
    const MCStatus result = dataSet->HandleDataFile();
    if (result.IsError()) return result;

    algorithm.fRightBorderClosed = settings.IsRightBorderClosed();
    algorithm.fPreparator = std::move(preparator);
    algorithm.fDataSet = std::move(dataSet);
    return result;
  }
};

}  // namespace MCBinning
