#pragma once

#include <ostream>
#include <string>

#include "export.h"
#include "progressreport.h"

// The library's own progress report: one index and one time.
class MCBINNING_API BINProgressReporter : public ProgressReport {
 public:
  // Index 0, elapsed time system-missing.
  BINProgressReporter();
  ~BINProgressReporter() override;

  int DiscreteMeasure(const std::string& name) override;
  double ScaleMeasure(const std::string& name) override;

  // `elapsedTime` in seconds.
  void SetValues(unsigned int index, double elapsedTime);

  // Writes a readable dump, in the stream's own formatting.
  std::ostream& Display(std::ostream& os) const;

 private:
  unsigned int fIndex;
  double fElapsedTime;
};
