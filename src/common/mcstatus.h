#pragma once

#include "export.h"

// Values and helpers of mcbinning that are not named for binning themselves.
namespace MCBinning {

// The outcome of an operation: a code, its severity, and details.
//
// A plain value, returned and stored by copy. Severity alone says whether it is OK, a
// warning or an error; a code of 0 does not. docs/status-codes.md lists every code with
// its meaning and data.
class MCBINNING_API MCStatus {
 public:
  // OK: code 0, all data 0.
  MCStatus();

  // A warning when `warning` is true, an error otherwise, whatever the code; all data 0.
  MCStatus(long code, bool warning);

  // One of docs/status-codes.md; 0 means that nothing is to be told.
  long GetErrorCode() const { return errorCode; }

  // The severity: exactly one of the three is true.
  bool IsOK() const { return severity == 0; }
  bool IsError() const { return severity < 0; }
  bool IsWarning() const { return severity > 0; }

  // Details: which variable, which index. Requires i < 3; it is not checked.
  long GetDiscreteDatum(unsigned int i) const { return discreteData[i]; }
  void SetDiscreteDatum(unsigned int i, long value) { discreteData[i] = value; }

  // Real-valued details; no status of this library fills them. Requires i < 3; not checked.
  double GetScaleDatum(unsigned int i) const { return scaleData[i]; }
  void SetScaleDatum(unsigned int i, double value) { scaleData[i] = value; }

  // Equal code, severity and data. A NaN among the data makes two records unequal.
  bool operator==(const MCStatus& other) const;

 private:
  long errorCode;
  short severity;
  long discreteData[3];
  double scaleData[3];
};

}  // namespace MCBinning
