#pragma once

#include <cstddef>

#include "common/binprogressreporter.h"
#include "common/progresslistener.h"
#include "common/stopwatch.h"

namespace MCBinning {

// Tells a listener how far the data pass has come, every so many records.
class PassProgress {
 public:
  // The listener stays the caller's and may be null. An interval of 0 or less reports after so
  // many records as there never are.
  PassProgress(ProgressListener* listener, int interval)
      : fListener(listener),
        fInterval(static_cast<unsigned int>(interval)),
        fCountdown(fInterval) {}

  // How many records it is to the next report, 0 for more than there ever are.
  std::size_t GetRecordsLeft() const { return fListener != nullptr ? fCountdown : 0; }

  // So many more records, and those of them that count as read. Requires no more than are left.
  void Add(std::size_t records, std::size_t recordsRead) {
    if (fListener == nullptr) return;
    fRecordsRead += static_cast<unsigned int>(recordsRead);
    fCountdown -= static_cast<unsigned int>(records);
    if (fCountdown != 0) return;
    fReporter.SetValues(fRecordsRead, fStopwatch.GetSeconds());
    fListener->ReportProgress(fReporter);
    fCountdown = fInterval;
  }

 private:
  ProgressListener* const fListener;
  const unsigned int fInterval;
  unsigned int fCountdown;
  unsigned int fRecordsRead = 0;
  BINProgressReporter fReporter;
  const Stopwatch fStopwatch;
};

}  // namespace MCBinning
