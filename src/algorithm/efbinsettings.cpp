#include "algorithm/efbinsettings.h"

#include "algorithm/settingsrules.h"
#include "common/displayframe.h"

using MCBinning::Plain;
using MCBinning::StoreIf;

EFBINSettings::EFBINSettings()
    : fProgressListener(nullptr),
      fNSkippedAttReports(0),
      fNSkippedCasesReports(100000),
      fCancelPointer(nullptr),
      fRightBorderClosed(true),
      fNumberOfBins(-1),
      fTempDirName(MCBinning::DefaultTempDirectory()) {}

bool EFBINSettings::SetNSkippedAttReports(int count) {
  return StoreIf(count >= 0, count, fNSkippedAttReports);
}

bool EFBINSettings::SetNSkippedCasesReports(int count) {
  return StoreIf(count >= 0, count, fNSkippedCasesReports);
}

bool EFBINSettings::SetRightBorderClosed(bool closed) { return fRightBorderClosed = closed; }

bool EFBINSettings::SetNumberOfBins(int count) {
  return StoreIf(count >= MCBinning::kFewestBins, count, fNumberOfBins);
}

bool EFBINSettings::operator==(const EFBINSettings& other) const {
  return fNSkippedAttReports == other.fNSkippedAttReports &&
         fNSkippedCasesReports == other.fNSkippedCasesReports &&
         fRightBorderClosed == other.fRightBorderClosed && fNumberOfBins == other.fNumberOfBins;
}

std::ostream& EFBINSettings::Display(std::ostream& os) const {
  MCBinning::DisplayStart(os, "EFBINSettings");
  MCBinning::DisplaySkippedReports(os, fNSkippedAttReports, fNSkippedCasesReports);
  os << Plain(fRightBorderClosed) << '\n'
     << "Number of bins for EF = " << Plain(fNumberOfBins) << '\n';
  return MCBinning::DisplayEnd(os, "EFBINSettings");
}
