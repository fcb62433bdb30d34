#include "cli/runprogress.h"

#include <algorithm>
#include <numeric>

namespace MCBin {

RunProgress::RunProgress(ProgressBar& bar, std::size_t jobCount, std::uint64_t recordCount,
                         std::uint64_t resultCount)
    : fBar(bar), fRecordCount(recordCount), fResultCount(resultCount), fRecordsRead(jobCount) {
  fBar.Start("reading", recordCount, "records");
}

int RunProgress::RecordsPerReport(std::uint64_t recordCount) {
  constexpr std::uint64_t kMostRecords = 10000;
  return static_cast<int>(std::clamp<std::uint64_t>(recordCount / 200, 1, kMostRecords));
}

bool RunProgress::IsReading() const {
  return std::any_of(fRecordsRead.begin(), fRecordsRead.end(),
                     [this](std::uint64_t count) { return count < fRecordCount; });
}

void RunProgress::SetRecordsRead(std::size_t job, std::uint64_t count) {
  const std::lock_guard lock(fMutex);
  fRecordsRead[job] = count;
  const std::uint64_t sum =
      std::accumulate(fRecordsRead.begin(), fRecordsRead.end(), std::uint64_t{0});
  fBar.Update(sum / fRecordsRead.size());
}

void RunProgress::AddResult(std::size_t job) {
  const std::lock_guard lock(fMutex);
  fRecordsRead[job] = fRecordCount;
  ++fResultsDone;
  if (IsReading()) return;
  if (!fShowsResults) fBar.Start("binning", fResultCount, "results");
  fShowsResults = true;
  fBar.Update(fResultsDone);
}

}  // namespace MCBin
