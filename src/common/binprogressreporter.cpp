#include "common/binprogressreporter.h"

#include "common/displayframe.h"
#include "common/missing.h"

BINProgressReporter::BINProgressReporter() : fIndex(0), fElapsedTime(MCMV::Missing()) {}

BINProgressReporter::~BINProgressReporter() = default;

int BINProgressReporter::DiscreteMeasure(const std::string& name) {
  return name == "IndexVar" ? static_cast<int>(fIndex) : -1;
}

double BINProgressReporter::ScaleMeasure(const std::string& name) {
  return name == "elapsedTime" ? fElapsedTime : MCMV::Missing();
}

void BINProgressReporter::SetValues(unsigned int index, double elapsedTime) {
  fIndex = index;
  fElapsedTime = elapsedTime;
}

std::ostream& BINProgressReporter::Display(std::ostream& os) const {
  MCBinning::DisplayStart(os, "BINProgressReporter");
  os << "IndexVar = " << fIndex << '\n' << "elapsedTime = " << fElapsedTime << '\n';
  return MCBinning::DisplayEnd(os, "BINProgressReporter");
}
