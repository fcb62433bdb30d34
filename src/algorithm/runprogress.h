#pragma once

#include "common/binprogressreporter.h"
#include "common/mcstatus.h"
#include "common/progresslistener.h"
#include "common/stopwatch.h"

namespace MCBinning {

// Tells a listener about every (N + 1)-th attribute that did not end with an error.
class RunProgress {
 public:
  // `listener` may be null.
  RunProgress(ProgressListener* listener, int skippedReports)
      : fListener(listener), fSkippedReports(skippedReports), fSkipsLeft(skippedReports) {}

  // To be called after each attribute. One that is due but ended with an error leaves its
  // report to the next.
  void Report(int attribute, const MCStatus& result) {
    if (fListener == nullptr) return;
    const bool isDue = fSkipsLeft-- < 1;
    if (!isDue || result.IsError()) return;
    fReporter.SetValues(static_cast<unsigned int>(attribute), fStopwatch.GetSeconds());
    fListener->ReportProgress(fReporter);
    fSkipsLeft = fSkippedReports;
  }

 private:
  ProgressListener* fListener;
  int fSkippedReports;
  int fSkipsLeft;
  BINProgressReporter fReporter;
  Stopwatch fStopwatch;
};

}  // namespace MCBinning
