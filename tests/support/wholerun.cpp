#include "support/wholerun.h"

#include <algorithm>
#include <functional>

#include "algorithm/binfactory.h"
#include "algorithm/binsettings.h"
#include "algorithm/efbinfactory.h"
#include "algorithm/efbinsettings.h"
#include "algorithm/runreport.h"
#include "output/binoutput.h"
#include "output/efbinoutput.h"
#include "support/agreement.h"
#include "support/tempdir.h"

namespace {

template <typename Settings>
Settings CommonSettings(const reference::Options& options, const std::string& tempDirName,
                        const Callbacks& callbacks) {
  Settings settings;
  settings.SetNumberOfBins(options.numberOfBins);
  settings.SetRightBorderClosed(options.rightBorderClosed);
  settings.SetTempDirName(tempDirName);
  settings.SetProgressListener(callbacks.listener);
  settings.SetCancelPointer(callbacks.query);
  settings.SetNSkippedCasesReports(callbacks.skippedRecordReports);
  settings.SetNSkippedAttReports(callbacks.skippedAttributeReports);
  return settings;
}

template <typename Result>
reference::Binning CommonOf(const Result& result) {
  reference::Binning binning;
  binning.status = PlainForm(result.GetStatus());
  binning.cases.distinctValues = result.GetNDistinctValues();
  binning.cases.totalWeight = result.GetTotalWeight();
  binning.cases.totalWeightWithMissing = result.GetTotalWeightWithMissing();
  binning.cases.minimum = result.GetMinimum();
  binning.cases.maximum = result.GetMaximum();
  binning.cutPoints = result.GetCutPoints();
  return binning;
}

StoredResult Stored(const BINAttributeTargetResults& result) {
  reference::Binning binning = CommonOf(result);
  binning.modelEntropy = result.GetModelEntropy();
  if (const std::vector<double>& missing = result.GetMissingCellCounts(); !missing.empty()) {
    binning.cases.missingWeights = {missing.begin() + 1, missing.end()};
  }
  binning.bestSplit = {result.GetBestSplitCutPoint(), result.GetBestSplitGain(),
                       result.GetBestSplitThreshold()};
  binning.counts = result.GetCellCounts();
  // A pair without any counts is stored as one bin without weights.
  if (binning.counts.size() == 1 && binning.counts.front().empty()) binning.counts.clear();
  return {result.GetAttributeIndex(), result.GetTargetIndex(), binning};
}

StoredResult Stored(const BINAttributeResults& result) {
  reference::Binning binning = CommonOf(result);
  binning.cases.missingWeights = {result.GetMissingWeight()};
  for (const double weight : result.GetCellCounts()) binning.counts.push_back({weight});
  return {result.GetAttributeIndex(), -1, binning};
}

}  // namespace

void PrintTo(Driver driver, std::ostream* os) {
  *os << (driver == Driver::kSupervised ? "Supervised" : "EqualFrequency");
}

WholeRun::WholeRun(Driver driver, const reference::Options& options, BINVarList& variables,
                   const std::string& tempDirName, const Callbacks& callbacks) {
  if (driver == Driver::kSupervised) {
    auto settings = CommonSettings<BINSettings>(options, tempDirName, callbacks);
    settings.SetNumDistinctValueThreshold(options.distinctThreshold);
    settings.SetSmallBinDetectionThreshold(options.smallBinThreshold);
    BINFactory factory;
    fSupervised.reset(factory.CreateBINAlgorithm(settings, variables));
    fCreated = factory.GetStatus();
  } else {
    auto settings = CommonSettings<EFBINSettings>(options, tempDirName, callbacks);
    EFBINFactory factory;
    fEqualFrequency.reset(factory.CreateEFBINAlgorithm(settings, variables));
    fCreated = factory.GetStatus();
  }
}

MCBinning::MCStatus WholeRun::CreateBins(MCCommon::RecordIterator& records,
                                         const std::vector<int>* attributes,
                                         const std::vector<int>* targets) {
  return fSupervised ? fSupervised->CreateBins(records, attributes, targets)
                     : fEqualFrequency->CreateBins(records, attributes);
}

MCBinning::MCStatus WholeRun::GetStatus() {
  return fSupervised ? fSupervised->GetStatus() : fEqualFrequency->GetStatus();
}

MCBinning::RunReport WholeRun::GetReport() const {
  return fSupervised ? MCBinning::GetRunReport(*fSupervised)
                     : MCBinning::GetRunReport(*fEqualFrequency);
}

void WholeRun::Cancel() { fSupervised ? fSupervised->Cancel() : fEqualFrequency->Cancel(); }

void WholeRun::SetCancelPtr(MCQueryCancel* query) {
  fSupervised ? fSupervised->SetCancelPtr(query) : fEqualFrequency->SetCancelPtr(query);
}

void WholeRun::SetProgressListener(ProgressListener* listener) {
  fSupervised ? fSupervised->SetProgressListener(listener)
              : fEqualFrequency->SetProgressListener(listener);
}

MCBinning::MCStatus WholeRun::ReadResults(std::vector<StoredResult>* stored) const {
  const auto read = [&](const auto& output, auto results) {
    const MCBinning::MCStatus status = output.GetAllCutPoints(results);
    if (stored == nullptr) return status;
    for (const auto& result : results) stored->push_back(Stored(result));
    return status;
  };
  return fSupervised
             ? read(fSupervised->GetBinningResults(), std::vector<BINAttributeTargetResults>())
             : read(fEqualFrequency->GetBinningResults(), std::vector<BINAttributeResults>());
}

std::vector<StoredResult> WholeRun::GetResults() const {
  std::vector<StoredResult> stored;
  ReadResults(&stored);
  return stored;
}

std::string WholeRun::Text(std::size_t count) const {
  const std::vector<StoredResult> results = GetResults();
  std::string text;
  for (std::size_t i = results.size() - std::min(results.size(), count); i < results.size(); ++i) {
    const auto& [attribute, target, binning] = results[i];
    text += std::to_string(attribute) + " by " + std::to_string(target) + ": " + ::Text(binning);
    text += '\n';
  }
  return text;
}

Outcome Bin(Driver driver, const Scenario& scenario, const std::vector<int>* attributes,
            const std::vector<int>* targets) {
  const TempDir directory;
  BINVarList variables = scenario.VarList();
  WholeRun run(driver, scenario.options, variables, directory.Path());
  if (!run.HasObject()) return {run.GetCreated(), {}};
  MCCommon::InMemoryRecordIterator records = scenario.Records();
  const MCBinning::MCStatus status = run.CreateBins(records, attributes, targets);
  return {status, run.GetResults()};
}

std::string DifferencesFromReference(const Outcome& outcome, const Scenario& scenario) {
  const std::vector<double> weights = scenario.StoredWeights();
  const auto isStored = [](double weight) { return weight != reference::kMissing; };
  const bool hasRecords = scenario.WeightIndex() < 0
                              ? !scenario.Stored(0).empty()
                              : std::any_of(weights.begin(), weights.end(), isStored);
  std::string differences;
  bool allOk = true;
  for (const auto& [attribute, target, binning] : outcome.results) {
    allOk = allOk && binning.status.severity == 0;
    const std::vector<double> values = scenario.Stored(attribute);
    const std::string expected =
        Text(target < 0 ? reference::BinEqualFrequency(values, weights, scenario.options, attribute)
                        : reference::BinAgainstTarget(values, scenario.Stored(target), weights,
                                                      scenario.options, attribute, target));
    const std::string actual = Text(binning);
    if (actual == expected) continue;
    differences += "attribute " + std::to_string(attribute) + ", target " + std::to_string(target) +
                   ":\n  expected " + expected + "\n  got " + actual + '\n';
  }
  const std::string status = !hasRecords ? "120004/-1[0 0 0]"
                             : allOk     ? "0/0[0 0 0]"
                                         : "120018/1[0 0 0]";
  if (Text(outcome.status) != status) {
    differences += "run: expected " + status + ", got " + Text(outcome.status) + '\n';
  }
  if (outcome.results.empty() == hasRecords) {
    differences += "run: " + std::to_string(outcome.results.size()) + " results\n";
  }
  return differences;
}

Scenario MixedScenario(int records) {
  const auto column = [records](const std::function<double(int record)>& value) {
    std::vector<double> values;
    for (int i = 0; i < records; ++i) values.push_back(value(i));
    return values;
  };
  Scenario scenario;
  scenario.Append(
      Continuous(column([](int i) { return i % 7 == 3 ? reference::kMissing : 0.25 * i; })));
  scenario.Append(Categorical(column([records](int i) { return i * 3 / records; }), 3,
                              IBINVariable::RoleTarget));
  scenario.Append(Continuous(column([](int i) { return (i * 37) % 101; })));
  scenario.Append(Categorical(column([](int i) { return (i / 5) % 4; }), 4));
  scenario.Append(Weights(column([](int i) { return 1 + i % 3; })));
  scenario.options.distinctThreshold = 20;
  scenario.options.numberOfBins = 8;
  scenario.options.smallBinThreshold = 0.3;
  return scenario;
}
