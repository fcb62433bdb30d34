#pragma once

#include <atomic>
#include <cstdint>
#include <functional>

#include "binmodel/run/jobs.h"
#include "binmodel/run/recordblocks.h"
#include "common/progresslistener.h"

namespace MCBinModel {

// What all jobs of a run have done. The work is counted in passes over a record: one when a job
// reads it, and one for every result that rests on it.
class RunProgress {
 public:
  using Listener = std::function<void(std::uint64_t done, std::uint64_t total)>;

  // Borrows the listener, which may be empty, and tells it that nothing is done. `total` is the
  // number of passes to come.
  RunProgress(const Listener& listener, std::uint64_t total);

  bool HasListener() const { return static_cast<bool>(fListener); }

  // How many records lie between two reports of a job, so that a bar moves smoothly.
  static int RecordsPerReport(std::uint64_t recordCount);

  // So many more passes are done. From any thread.
  void Add(std::uint64_t count) { fDone += count; }

  // Tells the listener what has been done by now, unless it knows. Requires one; from one thread.
  void Tell();

 private:
  const Listener& fListener;
  const std::uint64_t fTotal;
  std::atomic<std::uint64_t> fDone{0};
  std::uint64_t fTold = 0;
};

// Adds what the algorithm of one job reports.
class JobProgress : public ProgressListener {
 public:
  // Borrows all three.
  JobProgress(RunProgress& run, const RecordBlocks& records, Jobs& jobs)
      : fRun(run), fRecords(records), fJobs(jobs) {}

  void ReportProgress(ProgressReport& report) override;

 private:
  RunProgress& fRun;
  const RecordBlocks& fRecords;
  Jobs& fJobs;
  std::uint64_t fRecordsTold = 0;
};

}  // namespace MCBinModel
