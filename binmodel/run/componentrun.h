#pragma once

#include <memory>
#include <string>
#include <vector>

#include "binmodel/model/binmodel.h"
#include "cli/options/runoptions.h"
#include "cli/terminal/progressbar.h"
#include "csv/inputvariables.h"
#include "io/valuefile.h"

namespace MCBin {

// What one run of the component works on. Borrows all but the values.
struct ComponentRun {
  const RunOptions& options;
  const InputVariables& variables;
  std::shared_ptr<const ValueFile> values;  // with every job that still reads it
  const std::string& tempDir;
  ProgressBar& progress;
};

// Bin every attribute against every target, or every attribute on its own. Results come
// target by target, in the order of the attributes.
//
// RunOptions::jobs algorithm objects work side by side, each on a share of the attributes; the
// results are the same for any number of them. Every thread has ended on return.
//
// Throw InputError when the run as a whole failed (a result's own failure is its status),
// and Interrupt::Requested when the user stopped it.
std::vector<AttributeBins> RunSupervised(ComponentRun run);
std::vector<AttributeBins> RunEqualFrequency(ComponentRun run);

}  // namespace MCBin
