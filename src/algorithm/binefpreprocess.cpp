#include "algorithm/binefpreprocess.h"

#include "algorithm/percentilecuts.h"
#include "algorithm/percentilescan.h"
#include "common/displayframe.h"

BINEFPreProcess::BINEFPreProcess(int nBins, bool rightBorderClosed)
    : fRightBorderClosed(rightBorderClosed),
      fNumBins(nBins),
      fEFTuples(nullptr),
      fTuples(nullptr) {}

BINEFPreProcess::~BINEFPreProcess() = default;

bool BINEFPreProcess::EFCreatePercentileCutPts(std::vector<EFBINDataTuple>* tuples,
                                               std::vector<double>& cutPoints,
                                               std::vector<double>& binWeights,
                                               double totalWeight) {
  fEFTuples = tuples;
  return FindCutPts(cutPoints, binWeights, totalWeight);
}

bool BINEFPreProcess::EFCreatePercentileCutPts(std::vector<BINDataTuple>* tuples,
                                               std::vector<double>& cutPoints,
                                               std::vector<double>& binWeights,
                                               double totalWeight) {
  fTuples = tuples;
  return FindCutPts(cutPoints, binWeights, totalWeight);
}

bool BINEFPreProcess::FindCutPts(std::vector<double>& cutPoints, std::vector<double>& binWeights,
                                 double totalWeight) {
  const MCBinning::PercentileCuts cuts(*this);
  if (fEFTuples != nullptr) return cuts.Find(*fEFTuples, totalWeight, cutPoints, binWeights);
  return fTuples != nullptr && cuts.Find(*fTuples, totalWeight, cutPoints, binWeights);
}

double BINEFPreProcess::GetPercentile(std::vector<double>& cutPoints,
                                      std::vector<double>& binWeights, double percent,
                                      unsigned int& position, double& cumulativeWeight,
                                      double& previousCumulativeWeight, const double& totalWeight) {
  const auto step = [&](auto scan) {
    scan.SetState({position, cumulativeWeight, previousCumulativeWeight});
    const double value = scan.Next(percent, cutPoints, binWeights);
    position = static_cast<unsigned int>(scan.GetState().position);
    cumulativeWeight = scan.GetState().weight;
    previousCumulativeWeight = scan.GetState().previousWeight;
    return value;
  };
  if (fEFTuples != nullptr) {
    return step(MCBinning::PercentileScan(*fEFTuples, fRightBorderClosed, totalWeight));
  }
  return step(MCBinning::PercentileScan(*fTuples, fRightBorderClosed, totalWeight));
}

std::ostream& BINEFPreProcess::Display(std::ostream& os) const {
  MCBinning::DisplayStart(os, "BINEFPreProcess");
  os << "Number of bins = " << fNumBins << '\n'
     << "Right border closed = " << fRightBorderClosed << '\n';
  return MCBinning::DisplayEnd(os, "BINEFPreProcess");
}
