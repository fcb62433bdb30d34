#include "cli/runprogress.h"

#include <algorithm>

#include "common/progressreport.h"

namespace MCBin {

RunProgress::RunProgress(ProgressBar& bar, const CsvRecordIterator& records,
                         std::uint64_t recordCount, std::uint64_t resultCount)
    : fBar(bar), fRecords(records), fResultCount(resultCount) {
  fBar.Start("reading", recordCount, "records");
}

int RunProgress::RecordsPerReport(std::uint64_t recordCount) {
  constexpr std::uint64_t kMostRecords = 10000;
  return static_cast<int>(std::clamp<std::uint64_t>(recordCount / 200, 1, kMostRecords));
}

void RunProgress::ReportProgress(ProgressReport& report) {
  if (!fRecords.IsAtEnd()) {
    const int recordsRead = report.DiscreteMeasure("IndexVar");
    fBar.Update(static_cast<std::uint64_t>(std::max(0, recordsRead)));
    return;
  }
  if (fResultsDone == 0) fBar.Start("binning", fResultCount, "results");
  fBar.Update(++fResultsDone);
}

}  // namespace MCBin
