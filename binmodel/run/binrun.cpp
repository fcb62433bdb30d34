#include "binmodel/run/binrun.h"

#include <fmt/format.h>

#include <algorithm>
#include <cstddef>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <thread>
#include <unordered_set>
#include <utility>

#include "algorithm/binfactory.h"
#include "algorithm/binsettings.h"
#include "algorithm/efbinfactory.h"
#include "algorithm/efbinsettings.h"
#include "algorithm/ibinalgorithm.h"
#include "algorithm/iefbinalgorithm.h"
#include "binmodel/model/refusal.h"
#include "binmodel/run/classcount.h"
#include "binmodel/run/jobs.h"
#include "binmodel/run/recordblocks.h"
#include "binmodel/run/resultbins.h"
#include "binmodel/run/runcheck.h"
#include "binmodel/run/runprogress.h"
#include "binmodel/run/runshare.h"
#include "binmodel/text/displaytext.h"
#include "common/statuscodes.h"
#include "output/binoutput.h"
#include "output/efbinoutput.h"

namespace MCBinModel {

namespace {

// What all shares of a run have in common.
struct Run {
  const BinSettings& settings;
  const RunVariables& variables;  // without targets where the bins do not depend on them
  const ColumnSource& columns;
  const RunControl& control;
  RunProgress& progress;
  Jobs& jobs;
};

std::size_t CountThreads(int jobs, std::size_t attributeCount) {
  const auto cores = static_cast<std::size_t>(std::thread::hardware_concurrency());
  const auto asked = static_cast<std::size_t>(jobs);
  return std::clamp<std::size_t>(asked == 0 ? cores : asked, 1, attributeCount);
}

void RequireNotCancelled(const Jobs& jobs) {
  if (jobs.IsCancelled()) throw CancelledRun();
}

// One algorithm object's share of a run: its variables, its records, and what it calls.
class Share {
 public:
  Share(const Run& run, const AttributeShare& attributes)
      : fRun(run),
        fAttributes(attributes),
        fVariables(MakeShareVariables(run.variables, attributes)),
        fRecords(run.columns, fVariables.columns),
        fJobProgress(run.progress, fRecords, run.jobs) {}

  const AttributeShare& GetAttributes() const { return fAttributes; }
  ShareVariables& GetVariables() { return fVariables; }
  RecordBlocks& GetRecords() { return fRecords; }

  // The settings that both algorithms have. This object must outlive the algorithm.
  template <typename Settings>
  void SetCommon(Settings& settings) {
    settings.SetTempDirName(fRun.control.tempDir);
    settings.SetRightBorderClosed(fRun.settings.rightClosed);
    settings.SetCancelPointer(&fRun.jobs);
    if (!fRun.progress.HasListener()) return;
    settings.SetProgressListener(&fJobProgress);
    settings.SetNSkippedCasesReports(RunProgress::RecordsPerReport(fRecords.GetRecordCount()));
    settings.SetNSkippedAttReports(0);
  }

  // A failure of the whole run. What ended it may lie in the host's own objects.
  void CheckStatus(const MCBinning::MCStatus& status) const {
    fRecords.RethrowFailure();
    fRun.jobs.QueryCancel();
    RequireNotCancelled(fRun.jobs);
    if (!status.IsError()) return;
    const bool isMemory = HasCode(status, MCBinning::StatusCode::kOutOfMemory);
    throw FailedRun(status, isMemory ? Extent() : "");
  }

 private:
  // What may be too much of.
  std::string Extent() const {
    const RunVariables& variables = fRun.variables;
    return fmt::format(" for {} variables of {} records; bin fewer at a time",
                       variables.attributes.size() + variables.targets.size(),
                       fRun.columns.GetRecordCount());
  }

  const Run& fRun;
  const AttributeShare& fAttributes;
  ShareVariables fVariables;
  RecordBlocks fRecords;
  JobProgress fJobProgress;
};

// Puts what it finds at the places of the share's attributes in `results`.
void RunSupervised(const Run& run, Share& share, std::vector<AttributeBins>& results) {
  const ShareVariables& variables = share.GetVariables();
  std::vector<int> attributes;
  std::vector<int> targets;
  for (const int target : variables.targetIndexes) {
    attributes.insert(attributes.end(), variables.attributeIndexes.begin(),
                      variables.attributeIndexes.end());
    targets.insert(targets.end(), variables.attributeIndexes.size(), target);
  }

  BINSettings settings;
  share.SetCommon(settings);
  settings.SetNumDistinctValueThreshold(run.settings.prebinAbove);
  settings.SetNumberOfBins(run.settings.prebins);
  settings.SetSmallBinDetectionThreshold(run.settings.smallBins);

  BINFactory factory;
  const std::unique_ptr<IBINAlgorithm> algorithm(
      factory.CreateBINAlgorithm(settings, share.GetVariables().list));
  share.CheckStatus(factory.GetStatus());
  share.CheckStatus(algorithm->CreateBins(share.GetRecords(), &attributes, &targets));

  for (std::size_t i = 0; i < attributes.size(); ++i) {
    const std::size_t attribute = share.GetAttributes()[i % share.GetAttributes().size()];
    const std::size_t target = i / share.GetAttributes().size();
    BINAttributeTargetResults found;
    algorithm->GetBinningResults().GetAttributeTargetCutPoints(attributes[i], targets[i], found);
    AttributeBins& bins = results[target * run.variables.attributes.size() + attribute];
    bins = TakeResults(found);
    bins.attribute = attribute;
    bins.target = target;
    AddUnseenCategories(bins, run.variables.targets[target]);
  }
}

void RunEqualFrequency(const Run& run, Share& share, std::vector<AttributeBins>& results) {
  const ShareVariables& variables = share.GetVariables();
  EFBINSettings settings;
  share.SetCommon(settings);
  settings.SetNumberOfBins(run.settings.bins);

  EFBINFactory factory;
  const std::unique_ptr<IEFBINAlgorithm> algorithm(
      factory.CreateEFBINAlgorithm(settings, share.GetVariables().list));
  share.CheckStatus(factory.GetStatus());
  share.CheckStatus(algorithm->CreateBins(share.GetRecords(), &variables.attributeIndexes));

  for (std::size_t i = 0; i < share.GetAttributes().size(); ++i) {
    BINAttributeResults found;
    algorithm->GetBinningResults().GetAttributeCutPoints(variables.attributeIndexes[i], found);
    AttributeBins& bins = results[share.GetAttributes()[i]];
    bins = TakeResults(found);
    bins.attribute = share.GetAttributes()[i];
  }
}

std::vector<AttributeBins> RunShares(const Run& run, std::size_t threadCount,
                                     const std::vector<AttributeShare>& shares,
                                     std::size_t resultCount) {
  const bool isSupervised = run.settings.algorithm == Algorithm::kSupervised;
  std::vector<AttributeBins> results(resultCount);
  run.jobs.Run(threadCount, shares.size(), [&](std::size_t index) {
    Share share(run, shares[index]);
    (isSupervised ? RunSupervised : RunEqualFrequency)(run, share, results);
  });
  RequireNotCancelled(run.jobs);
  return results;
}

// What equal-frequency bins are made of: they know no target.
RunVariables WithoutTargets(const RunVariables& variables) {
  RunVariables others;
  others.attributes = variables.attributes;
  others.attributeColumns = variables.attributeColumns;
  others.weight = variables.weight;
  return others;
}

// The results as those of CheckResults, for a model whose bins were counted by target.
std::vector<std::size_t> ForEachTarget(const std::vector<std::size_t>& results,
                                       const BinModel& model) {
  std::vector<std::size_t> all;
  for (std::size_t target = 0; target < model.targets.size(); ++target) {
    for (const std::size_t result : results) {
      all.push_back(target * model.attributes.size() + result);
    }
  }
  return all;
}

void CheckCategories(const VariableInfo& variable, const char* use) {
  if (variable.IsCategorical() && variable.GetCategoryCount() >= 2) return;
  throw Refusal(RefusalCode::kInput, {.place = {}, .subject = variable.name, .detail = {}},
                fmt::format("{} {} needs at least two categories", use, QuotedText(variable.name)));
}

// A name stands for one variable: in the run, in the bin file and in what is made of it.
void CheckNames(const RunVariables& variables) {
  std::unordered_set<std::string_view> names;
  const auto check = [&](const std::string& name) {
    if (!name.empty() && names.insert(name).second) return;
    throw Refusal(RefusalCode::kInput, {.place = {}, .subject = name, .detail = {}},
                  name.empty() ? "there is a variable without a name"
                               : fmt::format("there are two variables {}", QuotedText(name)));
  };
  for (const VariableInfo& target : variables.targets) check(target.name);
  if (variables.weight) names.insert(variables.weight->info.name);
  for (const VariableInfo& attribute : variables.attributes) check(attribute.name);
}

void CheckVariables(const BinSettings& settings, const RunVariables& variables) {
  if (variables.attributes.size() != variables.attributeColumns.size() ||
      variables.targets.size() != variables.targetColumns.size()) {
    throw Refusal("there must be a column for every variable");
  }
  const bool isSupervised = settings.algorithm == Algorithm::kSupervised;
  if (variables.attributes.empty()) throw Refusal("there is no attribute to bin");
  if (isSupervised && variables.targets.empty()) {
    throw Refusal("supervised binning needs a target");
  }
  CheckNames(variables);
  for (const VariableInfo& target : variables.targets) CheckCategories(target, "the target");
  for (const VariableInfo& attribute : variables.attributes) {
    if (attribute.IsCategorical()) CheckCategories(attribute, "the categorical attribute");
  }
}

}  // namespace

BinModel MakeBins(const BinSettings& settings, RunVariables variables, const ColumnSource& columns,
                  const RunControl& control, std::vector<std::size_t>* countedAnew) {
  if (control.jobs < 0) {
    throw Refusal(fmt::format("a run cannot have {} threads", control.jobs));
  }
  CheckVariables(settings, variables);
  const DroppedRecords dropped = CheckWeights(variables, columns, control);
  const bool isSupervised = settings.algorithm == Algorithm::kSupervised;
  const bool countsClasses = !isSupervised && !variables.targets.empty();
  const RunVariables withoutTargets = countsClasses ? WithoutTargets(variables) : RunVariables();
  const std::size_t threadCount = CountThreads(control.jobs, variables.attributes.size());
  const std::vector<AttributeShare> shares = ShareOut(variables, columns, threadCount);
  const std::size_t resultCount =
      variables.attributes.size() * (isSupervised ? variables.targets.size() : 1);
  RunProgress progress(
      control.progress,
      columns.GetRecordCount() * (shares.size() * (countsClasses ? 2 : 1) + resultCount));
  Jobs jobs({control.cancel,
             progress.HasListener() ? std::function<void()>([&] { progress.Tell(); }) : nullptr});

  BinModel model;
  model.settings = settings;
  model.source.recordCount = columns.GetRecordCount();
  model.source.dropped = dropped;
  if (variables.weight) model.source.weight = variables.weight->info;
  model.results = RunShares(
      {settings, countsClasses ? withoutTargets : variables, columns, control, progress, jobs},
      threadCount, shares, resultCount);
  model.attributes = std::move(variables.attributes);
  model.targets = std::move(variables.targets);
  std::vector<std::size_t> anew = CheckResults(model, variables, columns, control);
  if (countsClasses) {
    anew = ForEachTarget(anew, model);
    CountClasses(model, variables, columns, {threadCount, shares, progress, jobs});
    RequireNotCancelled(jobs);
  }
  if (countedAnew != nullptr) *countedAnew = std::move(anew);
  return model;
}

}  // namespace MCBinModel
