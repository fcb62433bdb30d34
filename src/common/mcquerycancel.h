#pragma once

#include "export.h"

// Asked whether to stop a run: before every record, around every attribute, when an algorithm is
// made and when its status is looked at. The host implements it; the library never owns it and
// calls it on the thread that runs CreateBins. Once it has answered true it is not asked again.
class MCBINNING_API MCQueryCancel {
 public:
  virtual ~MCQueryCancel();

  // True to stop the run.
  virtual bool QueryCancel() = 0;
};
