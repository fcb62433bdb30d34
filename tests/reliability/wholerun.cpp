#include "reliability/wholerun.h"

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <vector>

#include "algorithm/binfactory.h"
#include "algorithm/binsettings.h"
#include "algorithm/efbinfactory.h"
#include "algorithm/efbinsettings.h"
#include "output/binoutput.h"
#include "output/efbinoutput.h"
#include "support/agreement.h"

namespace {

template <typename Settings>
void SetCommon(Settings& settings, const Scenario& scenario, const std::string& tempDirName,
               const Callbacks& callbacks) {
  settings.SetNumberOfBins(scenario.options.numberOfBins);
  settings.SetRightBorderClosed(scenario.options.rightBorderClosed);
  settings.SetTempDirName(tempDirName);
  settings.SetProgressListener(callbacks.listener);
  settings.SetCancelPointer(callbacks.query);
  settings.SetNSkippedCasesReports(1);
  settings.SetNSkippedAttReports(0);
}

void Append(std::string& text, double value) {
  char digits[64];
  std::snprintf(digits, sizeof digits, " %a", std::isnan(value) ? std::fabs(value) : value);
  text += digits;
}

void Append(std::string& text, const std::vector<double>& values) {
  text += " [";
  for (const double value : values) Append(text, value);
  text += " ]";
}

void AppendOwn(std::string& text, const BINAttributeResults& result) {
  Append(text, result.GetCellCounts());
}

void AppendOwn(std::string& text, const BINAttributeTargetResults& result) {
  text += " target " + std::to_string(result.GetTargetIndex());
  Append(text, result.GetModelEntropy());
  for (const std::vector<double>& counts : result.GetCellCounts()) Append(text, counts);
}

template <typename Result>
std::string TextOf(const std::vector<Result>& results, std::size_t count) {
  std::string text;
  for (std::size_t i = results.size() - std::min(results.size(), count); i < results.size(); ++i) {
    const Result& result = results[i];
    text += std::to_string(result.GetAttributeIndex()) + ": " + ::Text(result.GetStatus()) + ' ' +
            std::to_string(result.GetNDistinctValues());
    Append(text, result.GetTotalWeight());
    Append(text, result.GetTotalWeightWithMissing());
    Append(text, result.GetMinimum());
    Append(text, result.GetMaximum());
    Append(text, result.GetCutPoints());
    AppendOwn(text, result);
    text += '\n';
  }
  return text;
}

}  // namespace

void PrintTo(Driver driver, std::ostream* os) {
  *os << (driver == Driver::kSupervised ? "Supervised" : "EqualFrequency");
}

WholeRun::WholeRun(Driver driver, const Scenario& scenario, BINVarList& variables,
                   const std::string& tempDirName, Callbacks callbacks) {
  if (driver == Driver::kSupervised) {
    BINSettings settings;
    SetCommon(settings, scenario, tempDirName, callbacks);
    settings.SetNumDistinctValueThreshold(scenario.options.distinctThreshold);
    settings.SetSmallBinDetectionThreshold(scenario.options.smallBinThreshold);
    BINFactory factory;
    fSupervised.reset(factory.CreateBINAlgorithm(settings, variables));
    fCreated = factory.GetStatus();
  } else {
    EFBINSettings settings;
    SetCommon(settings, scenario, tempDirName, callbacks);
    EFBINFactory factory;
    fEqualFrequency.reset(factory.CreateEFBINAlgorithm(settings, variables));
    fCreated = factory.GetStatus();
  }
}

MCBinning::MCStatus WholeRun::CreateBins(MCCommon::RecordIterator& records) {
  return fSupervised ? fSupervised->CreateBins(records, nullptr, nullptr)
                     : fEqualFrequency->CreateBins(records, nullptr);
}

MCBinning::MCStatus WholeRun::GetStatus() {
  return fSupervised ? fSupervised->GetStatus() : fEqualFrequency->GetStatus();
}

void WholeRun::Cancel() { fSupervised ? fSupervised->Cancel() : fEqualFrequency->Cancel(); }

MCBinning::MCStatus WholeRun::ReadResults() const {
  if (fSupervised) {
    std::vector<BINAttributeTargetResults> results;
    return fSupervised->GetBinningResults().GetAllCutPoints(results);
  }
  std::vector<BINAttributeResults> results;
  return fEqualFrequency->GetBinningResults().GetAllCutPoints(results);
}

std::string WholeRun::Text(std::size_t count) const {
  if (fSupervised) {
    std::vector<BINAttributeTargetResults> results;
    fSupervised->GetBinningResults().GetAllCutPoints(results);
    return TextOf(results, count);
  }
  std::vector<BINAttributeResults> results;
  fEqualFrequency->GetBinningResults().GetAllCutPoints(results);
  return TextOf(results, count);
}

Scenario MixedScenario(int records) {
  std::vector<double> ascending;
  std::vector<double> scattered;
  std::vector<double> groups;
  std::vector<double> classes;
  std::vector<double> weights;
  for (int i = 0; i < records; ++i) {
    ascending.push_back(i % 7 == 3 ? reference::kMissing : 0.25 * i);
    scattered.push_back((i * 37) % 101);
    groups.push_back((i / 5) % 4);
    classes.push_back(i * 3 / records);
    weights.push_back(1 + i % 3);
  }
  Scenario scenario;
  scenario.Append(Continuous(ascending));
  scenario.Append(Categorical(classes, 3, IBINVariable::RoleTarget));
  scenario.Append(Continuous(scattered));
  scenario.Append(Categorical(groups, 4));
  scenario.Append(Weights(weights));
  scenario.options.distinctThreshold = 20;
  scenario.options.numberOfBins = 8;
  scenario.options.smallBinThreshold = 0.3;
  return scenario;
}
