#pragma once

#include <ostream>
#include <string>

#include "../common/export.h"

class MCQueryCancel;
class ProgressListener;

// What a host asks of supervised binning. A plain value; algorithms keep a copy.
//
// A setter that returns bool refuses a value out of range: it returns false and keeps the
// old value. The number of bins must be set: a run with the default fails with 120009. Making and
// copying settings and what takes or gives the directory's name may throw std::bad_alloc.
class MCBINNING_API BINSettings {
 public:
  // The defaults that stand with the setters. Copies point at the same listener and query.
  BINSettings();
  BINSettings(const BINSettings&) = default;
  BINSettings(BINSettings&&) = default;
  BINSettings& operator=(const BINSettings&) = default;
  BINSettings& operator=(BINSettings&&) = default;

  // Told about progress; null for nobody. Stays the host's and must outlive its use.
  void SetProgressListener(ProgressListener* listener) { fProgressListener = listener; }
  ProgressListener* GetProgressListener() { return fProgressListener; }

  // With N, every (N + 1)-th attribute/target pair is reported. N >= 0; default 0.
  bool SetNSkippedAttReports(int count);
  int GetNSkippedAttReports() const { return fNSkippedAttReports; }

  // With N, every N-th record is reported; 0 reports none. N >= 0; default 100000.
  bool SetNSkippedCasesReports(int count);
  int GetNSkippedCasesReports() const { return fNSkippedCasesReports; }

  // Asked whether to stop; null for nobody. Stays the host's and must outlive its use.
  void SetCancelPointer(MCQueryCancel* query) { fCancelPointer = query; }
  MCQueryCancel* GetCancelPointer() const { return fCancelPointer; }

  // Whether a bin includes its upper cut point (true, the default) or its lower one. Returns
  // the flag as it is now.
  bool SetRightBorderClosed(bool closed);
  bool IsRightBorderClosed() const { return fRightBorderClosed; }

  // An attribute with more distinct values than this is reduced to equal-frequency pre-bins,
  // whose borders are then the only candidate cut points. >= 0; at 0 and the default -1 no
  // attribute is.
  bool SetNumDistinctValueThreshold(int threshold);
  int GetNumDistinctValueThreshold() const { return fNumDistinctValueThreshold; }

  // How many equal-frequency pre-bins. >= 2; default -1.
  bool SetNumberOfBins(int count);
  int GetNumberOfBins() const { return fNumberOfBins; }

  // Where the temporary files go: one file of 8 bytes per record for every variable. Not
  // checked here. Default: /tmp, whatever TMPDIR says; "" means the current
  // directory.
  void SetTempDirName(const std::string& name) { fTempDirName = name; }
  std::string GetTempDirName() const { return fTempDirName; }

  // A bin between two others is merged into one of them when it weighs less than this
  // fraction of the lighter one. 0 to 1; default 0, which merges none.
  bool SetSmallBinDetectionThreshold(double fraction);
  double GetSmallBinDetectionThreshold() const { return fSmallBinDetectionThreshold; }

  // Compares the skipped reports, the closed border, the distinct value threshold and the
  // number of bins: not the host's objects, the directory or the small bin threshold.
  bool operator==(const BINSettings& other) const;

  // Writes a readable dump: flags as 1 or 0, numbers in decimal, whatever the stream's flags are.
  std::ostream& Display(std::ostream& os) const;

 private:
  ProgressListener* fProgressListener;
  int fNSkippedAttReports;
  int fNSkippedCasesReports;
  MCQueryCancel* fCancelPointer;
  bool fRightBorderClosed;
  int fNumDistinctValueThreshold;
  int fNumberOfBins;
  std::string fTempDirName;
  double fSmallBinDetectionThreshold;
};
