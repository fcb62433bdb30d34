#include "binmodel/run/runprogress.h"

#include <algorithm>

#include "common/progressreport.h"

namespace MCBinModel {

RunProgress::RunProgress(const Listener& listener, std::uint64_t total)
    : fListener(listener), fTotal(total) {
  if (fListener) fListener(0, fTotal);
}

int RunProgress::RecordsPerReport(std::uint64_t recordCount) {
  constexpr std::uint64_t kMostRecords = 10000;
  return static_cast<int>(std::clamp<std::uint64_t>(recordCount / 200, 1, kMostRecords));
}

void RunProgress::Tell() {
  const std::uint64_t done = fDone;
  if (done == fTold) return;
  fTold = done;
  fListener(done, fTotal);
}

// An algorithm reports records and results alike; its index counts records while it reads them,
// modulo 2^32.
void JobProgress::ReportProgress(ProgressReport& report) {
  const bool isResult = fRecords.IsAtEnd();
  const auto index = static_cast<std::uint32_t>(report.DiscreteMeasure("IndexVar"));
  const std::uint32_t newRecords = index - static_cast<std::uint32_t>(fRecordsTold);
  const std::uint64_t recordsRead =
      isResult ? fRecords.GetRecordCount() : fRecordsTold + newRecords;
  fRun.Add(recordsRead - fRecordsTold + (isResult ? recordsRead : 0));
  fRecordsTold = recordsRead;
  fJobs.Tell();
}

}  // namespace MCBinModel
