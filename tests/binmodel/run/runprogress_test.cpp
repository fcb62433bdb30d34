#include "binmodel/run/runprogress.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <vector>

#include "common/binprogressreporter.h"

namespace {

class LongColumns final : public MCBinModel::ColumnSource {
 public:
  std::uint64_t GetRecordCount() const override { return 5'000'000'000; }
  std::size_t GetRecordsPerBlock() const override { return 1; }
  void Read(std::size_t, std::size_t, double* values) const override { *values = 0.0; }
};

// An algorithm's reports count records in 32 bits; what is told goes on, and nothing twice.
TEST(RunProgress, GrowsBeyondWhatAReportCounts) {
  std::vector<std::uint64_t> told;
  const MCBinModel::RunProgress::Listener listener = [&](std::uint64_t done, std::uint64_t) {
    told.push_back(done);
  };
  const LongColumns columns;
  MCBinModel::RunProgress progress(listener, 2 * columns.GetRecordCount());
  MCBinModel::Jobs jobs({nullptr, [&] { progress.Tell(); }});
  const MCBinModel::RecordBlocks records(columns, {{0, nullptr}});
  MCBinModel::JobProgress job(progress, records, jobs);
  const std::vector<std::uint64_t> steps = {0, 2'147'480'000, 2'147'490'000, 4'294'960'000,
                                            4'294'970'000};
  for (std::size_t i = 1; i < steps.size(); ++i) {
    BINProgressReporter report;
    report.SetValues(static_cast<unsigned int>(steps[i]), 0.0);
    job.ReportProgress(report);
    jobs.Tell();  // another thread's, which the call before has answered
  }
  EXPECT_EQ(told, steps);
}

}  // namespace
