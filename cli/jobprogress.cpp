#include "cli/jobprogress.h"

namespace MCBin {

// The component reports records and results alike.
void JobProgress::ReportProgress(ProgressReport& /*report*/) {
  if (fRecords.IsAtEnd()) {
    fRun.AddResult(fJob);
  } else {
    fRun.SetRecordsRead(fJob, fRecords.GetRecordsRead());
  }
}

}  // namespace MCBin
