#include "binmodel/run/runprogress.h"

#include <algorithm>

namespace MCBinModel {

RunProgress::RunProgress(const Listener& listener, std::uint64_t total)
    : fListener(listener), fTotal(total) {
  if (fListener) fListener(0, fTotal);
}

int RunProgress::RecordsPerReport(std::uint64_t recordCount) {
  constexpr std::uint64_t kMostRecords = 10000;
  return static_cast<int>(std::clamp<std::uint64_t>(recordCount / 200, 1, kMostRecords));
}

void RunProgress::Add(std::uint64_t count) {
  const std::lock_guard lock(fMutex);
  fDone += count;
  fListener(fDone, fTotal);
}

// An algorithm reports records and results alike.
void JobProgress::ReportProgress(ProgressReport& /*report*/) {
  const std::uint64_t recordsRead = fRecords.GetRecordsRead();
  const bool isResult = fRecords.IsAtEnd();
  const std::uint64_t passes = recordsRead - fRecordsTold + (isResult ? recordsRead : 0);
  fRecordsTold = recordsRead;
  fJobs.Guard([&] { fRun.Add(passes); });
}

}  // namespace MCBinModel
