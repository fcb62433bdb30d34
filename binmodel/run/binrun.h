#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "../model/binmodel.h"
#include "../model/binmodelexport.h"
#include "../model/binsettings.h"
#include "../model/binsource.h"
#include "../model/variableinfo.h"
#include "columnsource.h"

namespace MCBinModel {

// What a run bins, and which column of its source holds what. Variables and columns are parallel.
struct RunVariables {
  // The frequency weights.
  struct Weight {
    WeightInfo info;         // rounding and missing values
    std::size_t column = 0;  // of the source
  };

  // Of any kind. Every variable has a name of its own.
  std::vector<VariableInfo> attributes;
  std::vector<std::size_t> attributeColumns;

  // Categorical. Supervised binning needs one; with equal-frequency binning, whose cut points know
  // none, they are counted.
  std::vector<VariableInfo> targets;
  std::vector<std::size_t> targetColumns;

  // Nothing when every record weighs 1.
  std::optional<Weight> weight;
};

// How a run works.
struct RunControl {
  // Where its temporary files go: 8 bytes a value, gone when it ends.
  std::string tempDir = "/tmp";

  // How many threads share the attributes; 0 is one for every core, fewer are refused. The bins
  // are the same for any number. Each thread has one attribute in memory, up to 64 bytes a record.
  // With one, all is done by the thread that calls MakeBins(); with more, that one makes the calls
  // below alone.
  int jobs = 1;

  // Told how much of the work is done, in passes over a record: first 0, then ever more. Called by
  // the thread that calls MakeBins().
  std::function<void(std::uint64_t done, std::uint64_t total)> progress = nullptr;

  // Asked often whether the run is to stop: for every block of records and every attribute, with
  // several threads every few milliseconds, for all of them at once. Called by the same thread.
  std::function<bool()> cancel = nullptr;
};

// Bins every attribute against every target, or with equal-frequency binning on its own. The
// results come target by target, in the order of the attributes; what went wrong with one is in
// its status. The model's source has the numbers of records, the weight and nothing else.
//
// Equal-frequency cut points are those of all cases with a value. When there are targets the cases
// are then counted in these bins by class, in another pass over the columns: weights are those of
// the cases that have the target, too, as with supervised bins. Such bins have the same measures
// and can be refined by event rates.
//
// Bins whose weights do not sum up to that of the valid cases are counted anew for the cut points
// there are (see the guide: cut points between neighbouring doubles); `countedAnew` gets the
// indexes of those results.
//
// Every thread has ended on return. Throws Refusal when the run as a whole failed or was stopped
// (RefusalCode::kCancelled), and what a callback or the columns threw.
MCBINMODEL_API BinModel MakeBins(const BinSettings& settings, RunVariables variables,
                                 const ColumnSource& columns, const RunControl& control,
                                 std::vector<std::size_t>* countedAnew = nullptr);

}  // namespace MCBinModel
