#include "binmodel/run/runprogress.h"

#include <algorithm>

namespace MCBinModel {

RunProgress::RunProgress(MCBin::ProgressBar& bar, std::uint64_t total) : fBar(bar) {
  constexpr double kRecordsPerUnit = 1e6;
  fBar.Start("binning", total, "M records", kRecordsPerUnit);
}

int RunProgress::RecordsPerReport(std::uint64_t recordCount) {
  constexpr std::uint64_t kMostRecords = 10000;
  return static_cast<int>(std::clamp<std::uint64_t>(recordCount / 200, 1, kMostRecords));
}

void RunProgress::Add(std::uint64_t count) {
  const std::lock_guard lock(fMutex);
  fDone += count;
  fBar.Update(fDone);
}

}  // namespace MCBinModel
