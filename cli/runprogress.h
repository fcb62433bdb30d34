#pragma once

#include <cstddef>
#include <cstdint>
#include <mutex>
#include <vector>

#include "cli/progressbar.h"

namespace MCBin {

// One bar for all jobs of a run: the records while any job reads them, then the results while
// they are made. Jobs tell it from their own threads.
class RunProgress {
 public:
  // Borrows the bar. Every job reads `recordCount` records; `resultCount` is the number of
  // results to come from all of them.
  RunProgress(ProgressBar& bar, std::size_t jobCount, std::uint64_t recordCount,
              std::uint64_t resultCount);

  // How many records lie between two reports, so that the bar moves smoothly.
  static int RecordsPerReport(std::uint64_t recordCount);

  void SetRecordsRead(std::size_t job, std::uint64_t count);

  // The job has read all records and made one more result.
  void AddResult(std::size_t job);

 private:
  bool IsReading() const;

  std::mutex fMutex;
  ProgressBar& fBar;
  const std::uint64_t fRecordCount;
  const std::uint64_t fResultCount;
  std::vector<std::uint64_t> fRecordsRead;  // by job
  std::uint64_t fResultsDone = 0;
  bool fShowsResults = false;
};

}  // namespace MCBin
