#include "binmodel/measure/evidence.h"

#include "binmodel/measure/binstatistics.h"

namespace MCBinModel {

namespace {

AttributeBins WithAdjustment(const AttributeBins& bins, double adjustment) {
  AttributeBins adjusted = bins;
  for (std::size_t bin = 0; bin < adjusted.classWeights.size(); ++bin) {
    if (adjusted.binWeights[bin] == 0.0) continue;
    for (double& weight : adjusted.classWeights[bin]) weight += adjustment;
  }
  return adjusted;
}

}  // namespace

Evidence MeasureEvidence(const AttributeBins& bins, std::size_t event, double adjustment) {
  const AttributeBins measured = WithAdjustment(bins, adjustment);
  return {WeightsOfEvidence(measured, event), InformationValueTerms(measured, event),
          InformationValue(measured, event)};
}

}  // namespace MCBinModel
