#include "binmodel/run/componentrun.h"

#include <fmt/format.h>

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <deque>
#include <memory>
#include <mutex>
#include <optional>
#include <thread>

#include "algorithm/binfactory.h"
#include "algorithm/binsettings.h"
#include "algorithm/efbinfactory.h"
#include "algorithm/efbinsettings.h"
#include "algorithm/ibinalgorithm.h"
#include "algorithm/iefbinalgorithm.h"
#include "binmodel/measure/binstatistics.h"
#include "binmodel/model/refusal.h"
#include "binmodel/model/statustext.h"
#include "binmodel/run/jobprogress.h"
#include "binmodel/run/jobs.h"
#include "binmodel/run/runprogress.h"
#include "binmodel/run/sharevariables.h"
#include "binmodel/run/valuerecorditerator.h"
#include "binmodel/text/displaytext.h"
#include "common/missing.h"
#include "io/interrupt.h"
#include "output/binoutput.h"
#include "output/efbinoutput.h"

namespace MCBinModel {

namespace {

std::size_t CountJobs(const ComponentRun& run) {
  const auto cores = static_cast<std::size_t>(std::thread::hardware_concurrency());
  const auto asked = static_cast<std::size_t>(run.jobs);
  return std::clamp<std::size_t>(asked == 0 ? cores : asked, 1, run.variables.attributes.size());
}

// One algorithm object's share of a run: its variables, its records, and what it calls.
class Share {
 public:
  Share(const ComponentRun& run, std::size_t share, std::size_t shareCount, RunProgress& progress)
      : fRun(run),
        fVariables(MakeShareVariables(run.variables, share, shareCount)),
        fRecords(run.values, fVariables.columns),
        fProgress(progress, fRecords) {}

  ShareVariables& GetVariables() { return fVariables; }
  ValueRecordIterator& GetRecords() { return fRecords; }

  // The settings that both algorithms have. This object and `cancel` must outlive the algorithm.
  template <typename Settings>
  void SetCommon(Settings& settings, MCQueryCancel& cancel) {
    settings.SetTempDirName(fRun.tempDir);
    settings.SetRightBorderClosed(fRun.settings.rightClosed);
    settings.SetCancelPointer(&cancel);
    if (!fRun.progress.IsVisible()) return;
    settings.SetProgressListener(&fProgress);
    settings.SetNSkippedCasesReports(RunProgress::RecordsPerReport(fRecords.GetRecordCount()));
    settings.SetNSkippedAttReports(0);
  }

  // A failure of the whole run. What ended it may lie in the tool's own objects.
  void CheckStatus(const MCBinning::MCStatus& status) const {
    fRecords.RethrowFailure();
    MCBin::Interrupt::ThrowIfRequested();
    if (!status.IsError()) return;
    throw Refusal(fmt::format("binning failed: {} (status {})", DescribeStatus(status),
                              status.GetErrorCode()));
  }

 private:
  const ComponentRun& fRun;
  ShareVariables fVariables;
  ValueRecordIterator fRecords;
  JobProgress fProgress;
};

std::optional<double> Known(double value) {
  return MCMV::IsMissing(value) ? std::nullopt : std::optional<double>(value);
}

// The midpoint of two values beyond half the largest double is infinite.
void CheckCutPoints(const std::vector<double>& cutPoints, const VariableInfo& attribute) {
  const bool finite = std::all_of(cutPoints.begin(), cutPoints.end(),
                                  [](double cutPoint) { return std::isfinite(cutPoint); });
  if (finite) return;
  throw Refusal(
      fmt::format("column {}: a cut point is beyond the largest double; divide the "
                  "values, for example by 1000",
                  QuotedText(attribute.name)));
}

void CheckWeight(double weight) {
  if (std::isfinite(weight)) return;
  throw Refusal(
      "the weights sum up to more than the largest double; divide them, for example by 1000");
}

// What the results of both algorithms have.
template <typename Results>
AttributeBins TakeCommon(const Results& results) {
  CheckWeight(results.GetTotalWeightWithMissing());
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

// Runs `binShare(share, cancel, results)` for every share, which puts what it finds at its own
// places in the results, `resultCount` in number.
template <typename BinShare>
std::vector<AttributeBins> RunShares(ComponentRun& run, std::size_t resultCount,
                                     const BinShare& binShare) {
  const std::size_t shareCount = CountJobs(run);
  RunProgress progress(run.progress, run.values->GetRecordCount() * (shareCount + resultCount));
  std::vector<AttributeBins> results(resultCount);
  // All made before the first job begins: once a job has ended, the values may be gone.
  std::deque<Share> shares;
  for (std::size_t index = 0; index < shareCount; ++index) {
    shares.emplace_back(run, index, shareCount, progress);
  }
  std::once_flag areValuesLetGo;
  Jobs jobs;
  jobs.Run(shareCount, [&](std::size_t index) {
    binShare(shares[index], jobs, results);
    // Giving a large file back to the system takes a while: the first to end has the time.
    std::call_once(areValuesLetGo, [&] { run.values.reset(); });
  });
  for (const AttributeBins& bins : results) {
    CheckCutPoints(bins.cutPoints, run.variables.attributes[bins.attribute]);
  }
  return results;
}

}  // namespace

std::vector<AttributeBins> RunSupervised(ComponentRun run) {
  const std::size_t attributeCount = run.variables.attributes.size();
  const auto binShare = [&](Share& share, MCQueryCancel& cancel, std::vector<AttributeBins>& all) {
    const ShareVariables& variables = share.GetVariables();
    std::vector<int> attributes;
    std::vector<int> targets;
    for (const int target : variables.targetIndexes) {
      attributes.insert(attributes.end(), variables.attributeIndexes.begin(),
                        variables.attributeIndexes.end());
      targets.insert(targets.end(), variables.attributeIndexes.size(), target);
    }

    BINSettings settings;
    share.SetCommon(settings, cancel);
    settings.SetNumDistinctValueThreshold(run.settings.prebinAbove);
    settings.SetNumberOfBins(run.settings.prebins);
    settings.SetSmallBinDetectionThreshold(run.settings.smallBins);

    BINFactory factory;
    const std::unique_ptr<IBINAlgorithm> algorithm(
        factory.CreateBINAlgorithm(settings, share.GetVariables().list));
    share.CheckStatus(factory.GetStatus());
    share.CheckStatus(algorithm->CreateBins(share.GetRecords(), &attributes, &targets));

    for (std::size_t i = 0; i < attributes.size(); ++i) {
      const std::size_t attribute = variables.attributes[i % variables.attributes.size()];
      const std::size_t target = i / variables.attributes.size();
      BINAttributeTargetResults results;
      algorithm->GetBinningResults().GetAttributeTargetCutPoints(attributes[i], targets[i],
                                                                 results);
      AttributeBins& bins = all[target * attributeCount + attribute];
      bins = TakeResults(results);
      bins.attribute = attribute;
      bins.target = target;
    }
  };
  return RunShares(run, attributeCount * run.variables.targets.size(), binShare);
}

std::vector<AttributeBins> RunEqualFrequency(ComponentRun run) {
  const auto binShare = [&](Share& share, MCQueryCancel& cancel, std::vector<AttributeBins>& all) {
    const ShareVariables& variables = share.GetVariables();
    EFBINSettings settings;
    share.SetCommon(settings, cancel);
    settings.SetNumberOfBins(run.settings.bins);

    EFBINFactory factory;
    const std::unique_ptr<IEFBINAlgorithm> algorithm(
        factory.CreateEFBINAlgorithm(settings, share.GetVariables().list));
    share.CheckStatus(factory.GetStatus());
    share.CheckStatus(algorithm->CreateBins(share.GetRecords(), &variables.attributeIndexes));

    for (std::size_t i = 0; i < variables.attributes.size(); ++i) {
      BINAttributeResults results;
      algorithm->GetBinningResults().GetAttributeCutPoints(variables.attributeIndexes[i], results);
      AttributeBins& bins = all[variables.attributes[i]];
      bins = TakeResults(results);
      bins.attribute = variables.attributes[i];
    }
  };
  return RunShares(run, run.variables.attributes.size(), binShare);
}

}  // namespace MCBinModel
