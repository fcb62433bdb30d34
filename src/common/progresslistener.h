#pragma once

#include "export.h"

class ProgressReport;

// Told how far a run has come. The host implements it; the library never owns it and
// calls it on the thread that runs CreateBins. A listener that throws ends the run with
// an error status.
class MCBINNING_API ProgressListener {
 public:
  virtual ~ProgressListener();

  // `report` lives as long as the call, and the run waits for its return.
  virtual void ReportProgress(ProgressReport& report) = 0;
};
