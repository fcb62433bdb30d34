#pragma once

#include <cstdint>
#include <mutex>

#include "cli/terminal/progressbar.h"

namespace MCBinModel {

// One bar for all jobs of a run. The work is counted in passes over a record: one when a job
// reads it, and one for every result that rests on it.
class RunProgress {
 public:
  // Borrows the bar. `total` is the number of passes to come.
  RunProgress(MCBin::ProgressBar& bar, std::uint64_t total);

  // How many records lie between two reports of a job, so that the bar moves smoothly.
  static int RecordsPerReport(std::uint64_t recordCount);

  // So many more passes are done. From any thread.
  void Add(std::uint64_t count);

 private:
  std::mutex fMutex;
  MCBin::ProgressBar& fBar;
  std::uint64_t fDone = 0;
};

}  // namespace MCBinModel
