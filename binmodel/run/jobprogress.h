#pragma once

#include <cstdint>

#include "binmodel/run/runprogress.h"
#include "binmodel/run/valuerecorditerator.h"
#include "common/progresslistener.h"

namespace MCBinModel {

// Tells the run's progress what the component reports to one job.
class JobProgress : public ProgressListener {
 public:
  // Borrows both objects.
  JobProgress(RunProgress& run, const ValueRecordIterator& records)
      : fRun(run), fRecords(records) {}

  void ReportProgress(ProgressReport& report) override;

 private:
  RunProgress& fRun;
  const ValueRecordIterator& fRecords;
  std::uint64_t fRecordsTold = 0;
};

}  // namespace MCBinModel
