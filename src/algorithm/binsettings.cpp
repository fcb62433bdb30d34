#include "algorithm/binsettings.h"

#include "algorithm/settingsrules.h"
#include "common/displayframe.h"

using MCBinning::Plain;
using MCBinning::StoreIf;

BINSettings::BINSettings()
    : fProgressListener(nullptr),
      fNSkippedAttReports(0),
      fNSkippedCasesReports(100000),
      fCancelPointer(nullptr),
      fRightBorderClosed(true),
      fNumDistinctValueThreshold(-1),
      fNumberOfBins(-1),
      fTempDirName(MCBinning::DefaultTempDirectory()),
      fSmallBinDetectionThreshold(0.0) {}

bool BINSettings::SetNSkippedAttReports(int count) {
  return StoreIf(count >= 0, count, fNSkippedAttReports);
}

bool BINSettings::SetNSkippedCasesReports(int count) {
  return StoreIf(count >= 0, count, fNSkippedCasesReports);
}

bool BINSettings::SetRightBorderClosed(bool closed) { return fRightBorderClosed = closed; }

bool BINSettings::SetNumDistinctValueThreshold(int threshold) {
  return StoreIf(threshold >= 0, threshold, fNumDistinctValueThreshold);
}

bool BINSettings::SetNumberOfBins(int count) {
  return StoreIf(count >= MCBinning::kFewestBins, count, fNumberOfBins);
}

bool BINSettings::SetSmallBinDetectionThreshold(double fraction) {
  return StoreIf(fraction >= 0.0 && fraction <= 1.0, fraction, fSmallBinDetectionThreshold);
}

bool BINSettings::operator==(const BINSettings& other) const {
  return fNSkippedAttReports == other.fNSkippedAttReports &&
         fNSkippedCasesReports == other.fNSkippedCasesReports &&
         fRightBorderClosed == other.fRightBorderClosed &&
         fNumDistinctValueThreshold == other.fNumDistinctValueThreshold &&
         fNumberOfBins == other.fNumberOfBins;
}

std::ostream& BINSettings::Display(std::ostream& os) const {
  MCBinning::DisplayStart(os, "BINSettings");
  MCBinning::DisplaySkippedReports(os, fNSkippedAttReports, fNSkippedCasesReports);
  os << "if use EF as proprecess = " << Plain(fRightBorderClosed) << '\n'
     << "Number of distinct value = " << Plain(fNumDistinctValueThreshold) << '\n'
     << "Number of bins for EF = " << Plain(fNumberOfBins) << '\n';
  return MCBinning::DisplayEnd(os, "BINSettings");
}
