#pragma once

#include <cstdint>

#include "cli/csvrecorditerator.h"
#include "cli/progressbar.h"
#include "common/progresslistener.h"

namespace MCBin {

// Shows the component's progress reports: the records while they are read, then the
// results while they are made.
class RunProgress : public ProgressListener {
 public:
  // Borrows both objects. `resultCount` is the number of results to come.
  RunProgress(ProgressBar& bar, const CsvRecordIterator& records, std::uint64_t recordCount,
              std::uint64_t resultCount);

  // How many records lie between two reports, so that the bar moves smoothly.
  static int RecordsPerReport(std::uint64_t recordCount);

  void ReportProgress(ProgressReport& report) override;

 private:
  ProgressBar& fBar;
  const CsvRecordIterator& fRecords;
  const std::uint64_t fResultCount;
  std::uint64_t fResultsDone = 0;
};

}  // namespace MCBin
