#pragma once

#include <string>

#include "export.h"

// What the library tells a ProgressListener: measures by name. Exists only during the
// call; a listener copies what it wants to keep.
class MCBINNING_API ProgressReport {
 public:
  virtual ~ProgressReport();

  // A whole-number measure: "IndexVar" (the number of records read so far, or the index of
  // the attribute just binned); -1 for an unknown name. Names are case-sensitive.
  virtual int DiscreteMeasure(const std::string& name) = 0;

  // A real measure: "elapsedTime" (processor seconds since the step began); the
  // system-missing value for an unknown name.
  virtual double ScaleMeasure(const std::string& name) = 0;
};
