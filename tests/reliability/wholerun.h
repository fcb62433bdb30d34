#pragma once

#include <memory>
#include <ostream>
#include <string>

#include "algorithm/ibinalgorithm.h"
#include "algorithm/iefbinalgorithm.h"
#include "common/mcquerycancel.h"
#include "common/mcstatus.h"
#include "common/progresslistener.h"
#include "host/recorditerator.h"
#include "metadata/binvarlist.h"
#include "support/scenario.h"

enum class Driver { kSupervised, kEqualFrequency };
inline constexpr Driver kDrivers[] = {Driver::kSupervised, Driver::kEqualFrequency};
void PrintTo(Driver driver, std::ostream* os);

// Whom a run reports to and asks; null for nobody.
struct Callbacks {
  ProgressListener* listener = nullptr;
  MCQueryCancel* query = nullptr;
};

// One algorithm object of either kind, made by its factory for a scenario, that bins every
// attribute and reports every record and attribute.
class WholeRun {
 public:
  WholeRun(Driver driver, const Scenario& scenario, BINVarList& variables,
           const std::string& tempDirName, Callbacks callbacks = {});

  // The factory's status; without an object, nothing else may be called.
  const MCBinning::MCStatus& GetCreated() const { return fCreated; }

  MCBinning::MCStatus CreateBins(MCCommon::RecordIterator& records);
  MCBinning::MCStatus GetStatus();
  void Cancel();

  // Looks at the stored results as a host does. OK, 120020 without any, or 3.
  MCBinning::MCStatus ReadResults() const;

  // All that the last `count` stored results say, exact to the bit, with NaN as one value; of
  // every result by default.
  std::string Text(std::size_t count = static_cast<std::size_t>(-1)) const;

 private:
  std::unique_ptr<IBINAlgorithm> fSupervised;
  std::unique_ptr<IEFBINAlgorithm> fEqualFrequency;
  MCBinning::MCStatus fCreated;
};

// Two continuous attributes, one categorical, a target of three categories and a weight; with
// pre-bins and merging of small bins.
Scenario MixedScenario(int records);
