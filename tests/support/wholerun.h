#pragma once

#include <cstddef>
#include <memory>
#include <ostream>
#include <string>
#include <vector>

#include "algorithm/ibinalgorithm.h"
#include "algorithm/iefbinalgorithm.h"
#include "common/mcquerycancel.h"
#include "common/mcstatus.h"
#include "common/progresslistener.h"
#include "common/runreport.h"
#include "host/recorditerator.h"
#include "metadata/binvarlist.h"
#include "support/scenario.h"

enum class Driver { kSupervised, kEqualFrequency };
inline constexpr Driver kDrivers[] = {Driver::kSupervised, Driver::kEqualFrequency};
void PrintTo(Driver driver, std::ostream* os);

// Whom a run reports to and asks, null for nobody; and how often it reports.
struct Callbacks {
  ProgressListener* listener = nullptr;
  MCQueryCancel* query = nullptr;
  int skippedRecordReports = 1;  // every record
  int skippedAttributeReports = 0;
};

// A stored result of either kind, in the form that the reference gives its own.
struct StoredResult {
  int attribute;
  int target;  // -1 without
  reference::Binning binning;
};

// One algorithm object of either kind, made by its factory.
class WholeRun {
 public:
  WholeRun(Driver driver, const reference::Options& options, BINVarList& variables,
           const std::string& tempDirName, const Callbacks& callbacks = {});

  // The factory's status; without an object, nothing else may be called.
  const MCBinning::MCStatus& GetCreated() const { return fCreated; }
  bool HasObject() const { return fSupervised || fEqualFrequency; }

  // Null lists mean what they mean to the library; equal-frequency bins have no targets.
  MCBinning::MCStatus CreateBins(MCCommon::RecordIterator& records,
                                 const std::vector<int>* attributes = nullptr,
                                 const std::vector<int>* targets = nullptr);
  MCBinning::MCStatus GetStatus();
  MCBinning::RunReport GetReport() const;
  void Cancel();
  void SetCancelPtr(MCQueryCancel* query);
  void SetProgressListener(ProgressListener* listener);

  // Looks at the stored results as a host does; appends them to `stored`, unless that is null.
  // OK, 120020 without any, or 3.
  MCBinning::MCStatus ReadResults(std::vector<StoredResult>* stored = nullptr) const;
  std::vector<StoredResult> GetResults() const;

  // All that the last `count` stored results say, a line each; of every result by default.
  std::string Text(std::size_t count = static_cast<std::size_t>(-1)) const;

 private:
  std::unique_ptr<IBINAlgorithm> fSupervised;
  std::unique_ptr<IEFBINAlgorithm> fEqualFrequency;
  MCBinning::MCStatus fCreated;
};

// The results of a scenario's records, and the run's status.
struct Outcome {
  MCBinning::MCStatus status;
  std::vector<StoredResult> results;
};

Outcome Bin(Driver driver, const Scenario& scenario, const std::vector<int>* attributes = nullptr,
            const std::vector<int>* targets = nullptr);

// What differs from the reference, bit by bit, in a run that no variable was refused in; empty
// when all agree.
std::string DifferencesFromReference(const Outcome& outcome, const Scenario& scenario);

// Two continuous attributes, one categorical, a target of three categories and a weight; with
// pre-bins and merging of small bins.
Scenario MixedScenario(int records);
