#include "cli/componentrun.h"

#include <fmt/format.h>

#include <algorithm>
#include <cmath>
#include <memory>
#include <optional>

#include "algorithm/binfactory.h"
#include "algorithm/binsettings.h"
#include "algorithm/efbinfactory.h"
#include "algorithm/efbinsettings.h"
#include "algorithm/ibinalgorithm.h"
#include "algorithm/iefbinalgorithm.h"
#include "cli/binstatistics.h"
#include "cli/displaytext.h"
#include "cli/inputerror.h"
#include "cli/interrupt.h"
#include "cli/runprogress.h"
#include "cli/statustext.h"
#include "common/missing.h"
#include "output/binoutput.h"
#include "output/efbinoutput.h"

namespace MCBin {

namespace {

// The settings that both algorithms have. The objects must outlive the algorithm.
template <typename Settings>
void SetCommon(Settings& settings, const ComponentRun& run, RunProgress& progress,
               Interrupt& cancel) {
  settings.SetTempDirName(run.tempDir);
  settings.SetRightBorderClosed(run.options.rightClosed);
  settings.SetCancelPointer(&cancel);
  if (!run.progress.IsVisible()) return;
  settings.SetProgressListener(&progress);
  settings.SetNSkippedCasesReports(RunProgress::RecordsPerReport(run.recordCount));
  settings.SetNSkippedAttReports(0);
}

// A failure of the whole run. What ended it may lie in the tool's own objects.
void CheckStatus(const MCBinning::MCStatus& status, const ComponentRun& run) {
  run.records.RethrowFailure();
  Interrupt::ThrowIfRequested();
  if (!status.IsError()) return;
  throw InputError(
      fmt::format("binning failed: {} (status {})", DescribeStatus(status), status.GetErrorCode()));
}

std::optional<double> Known(double value) {
  return MCMV::IsMissing(value) ? std::nullopt : std::optional<double>(value);
}

// The midpoint of two values beyond half the largest double is infinite.
void CheckCutPoints(const std::vector<double>& cutPoints, const VariableInfo& attribute) {
  const bool finite = std::all_of(cutPoints.begin(), cutPoints.end(),
                                  [](double cutPoint) { return std::isfinite(cutPoint); });
  if (finite) return;
  throw InputError(
      fmt::format("column {}: a cut point is beyond the largest double; divide the "
                  "values, for example by 1000",
                  QuotedText(attribute.name)));
}

// What the results of both algorithms have.
template <typename Results>
AttributeBins TakeCommon(const Results& results) {
  AttributeBins bins{};
  bins.status = results.GetStatus();
  bins.cutPoints = results.GetCutPoints();
  bins.distinctValues = results.GetNDistinctValues();
  bins.validWeight = results.GetTotalWeight();
  bins.weightWithMissing = results.GetTotalWeightWithMissing();
  if (results.GetNDistinctValues() > 0) {
    bins.minimum = Known(results.GetMinimum());
    bins.maximum = Known(results.GetMaximum());
  }
  return bins;
}

AttributeBins TakeResults(const BINAttributeTargetResults& results) {
  AttributeBins bins = TakeCommon(results);
  for (const std::vector<double>& cells : results.GetCellCounts()) {
    if (cells.empty()) continue;
    bins.binWeights.push_back(cells.front());
    bins.classWeights.emplace_back(cells.begin() + 1, cells.end());
  }
  if (!bins.binWeights.empty()) {
    bins.modelEntropy = Known(results.GetModelEntropy());
    if (bins.modelEntropy) bins.informationGain = InformationGain(bins);
  }
  return bins;
}

AttributeBins TakeResults(const BINAttributeResults& results) {
  AttributeBins bins = TakeCommon(results);
  bins.binWeights = results.GetCellCounts();
  return bins;
}

}  // namespace

std::vector<AttributeBins> RunSupervised(const ComponentRun& run) {
  const InputVariables& variables = run.variables;
  std::vector<int> attributes;
  std::vector<int> targets;
  for (const int target : variables.targetIndexes) {
    attributes.insert(attributes.end(), variables.attributeIndexes.begin(),
                      variables.attributeIndexes.end());
    targets.insert(targets.end(), variables.attributeIndexes.size(), target);
  }

  RunProgress progress(run.progress, run.records, run.recordCount, attributes.size());
  Interrupt cancel;
  BINSettings settings;
  SetCommon(settings, run, progress, cancel);
  settings.SetNumDistinctValueThreshold(run.options.prebinAbove);
  settings.SetNumberOfBins(run.options.prebins);
  settings.SetSmallBinDetectionThreshold(run.options.smallBins);

  BINFactory factory;
  const std::unique_ptr<IBINAlgorithm> algorithm(
      factory.CreateBINAlgorithm(settings, run.variables.list));
  CheckStatus(factory.GetStatus(), run);
  CheckStatus(algorithm->CreateBins(run.records, &attributes, &targets), run);

  std::vector<AttributeBins> all;
  for (std::size_t i = 0; i < attributes.size(); ++i) {
    BINAttributeTargetResults results;
    algorithm->GetBinningResults().GetAttributeTargetCutPoints(attributes[i], targets[i], results);
    all.push_back(TakeResults(results));
    all.back().attribute = i % variables.attributes.size();
    all.back().target = i / variables.attributes.size();
    CheckCutPoints(all.back().cutPoints, variables.attributes[all.back().attribute]);
  }
  return all;
}

std::vector<AttributeBins> RunEqualFrequency(const ComponentRun& run) {
  const std::vector<int>& attributes = run.variables.attributeIndexes;
  RunProgress progress(run.progress, run.records, run.recordCount, attributes.size());
  Interrupt cancel;
  EFBINSettings settings;
  SetCommon(settings, run, progress, cancel);
  settings.SetNumberOfBins(run.options.bins);

  EFBINFactory factory;
  const std::unique_ptr<IEFBINAlgorithm> algorithm(
      factory.CreateEFBINAlgorithm(settings, run.variables.list));
  CheckStatus(factory.GetStatus(), run);
  CheckStatus(algorithm->CreateBins(run.records, &attributes), run);

  std::vector<AttributeBins> all;
  for (std::size_t i = 0; i < attributes.size(); ++i) {
    BINAttributeResults results;
    algorithm->GetBinningResults().GetAttributeCutPoints(attributes[i], results);
    all.push_back(TakeResults(results));
    all.back().attribute = i;
    CheckCutPoints(all.back().cutPoints, run.variables.attributes[i]);
  }
  return all;
}

}  // namespace MCBin
