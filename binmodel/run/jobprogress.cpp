#include "binmodel/run/jobprogress.h"

namespace MCBinModel {

// The component reports records and results alike.
void JobProgress::ReportProgress(ProgressReport& /*report*/) {
  const std::uint64_t recordsRead = fRecords.GetRecordsRead();
  const bool isResult = fRecords.IsAtEnd();
  fRun.Add(recordsRead - fRecordsTold + (isResult ? recordsRead : 0));
  fRecordsTold = recordsRead;
}

}  // namespace MCBinModel
