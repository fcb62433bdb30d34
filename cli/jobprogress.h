#pragma once

#include <cstddef>

#include "cli/runprogress.h"
#include "cli/valuerecorditerator.h"
#include "common/progresslistener.h"

namespace MCBin {

// Tells the run what the component reports to one job.
class JobProgress : public ProgressListener {
 public:
  // Borrows both objects.
  JobProgress(RunProgress& run, std::size_t job, const ValueRecordIterator& records)
      : fRun(run), fJob(job), fRecords(records) {}

  void ReportProgress(ProgressReport& report) override;

 private:
  RunProgress& fRun;
  const std::size_t fJob;
  const ValueRecordIterator& fRecords;
};

}  // namespace MCBin
