#pragma once

#include <memory>
#include <string>
#include <vector>

#include "binmodel/model/binmodel.h"
#include "cli/terminal/progressbar.h"
#include "csv/inputvariables.h"
#include "io/valuefile.h"

namespace MCBinModel {

// What one run of the component works on. Borrows all but the values.
struct ComponentRun {
  const BinSettings& settings;
  int jobs;  // 0: one for every core
  const MCBin::InputVariables& variables;
  std::shared_ptr<const MCBin::ValueFile> values;  // with every job that still reads it
  const std::string& tempDir;
  MCBin::ProgressBar& progress;
};

// Bin every attribute against every target, or every attribute on its own. Results come
// target by target, in the order of the attributes.
//
// ComponentRun::jobs algorithm objects work side by side, each on a share of the attributes; the
// results are the same for any number of them. Every thread has ended on return.
//
// Throw Refusal when the run as a whole failed (a result's own failure is its status),
// and Interrupt::Requested when the user stopped it.
std::vector<AttributeBins> RunSupervised(ComponentRun run);
std::vector<AttributeBins> RunEqualFrequency(ComponentRun run);

}  // namespace MCBinModel
