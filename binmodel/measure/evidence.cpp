#include "binmodel/measure/evidence.h"

#include <cmath>

#include "binmodel/measure/binstatistics.h"
#include "binmodel/model/refusal.h"

namespace MCBinModel {

namespace {

// The bins to measure: with their adjustment, the missing cases as the last one.
AttributeBins BinsToMeasure(const AttributeBins& bins, double adjustment, bool withMissing) {
  AttributeBins measured;
  measured.binWeights = bins.binWeights;
  measured.classWeights = bins.classWeights;
  if (withMissing) {
    measured.binWeights.push_back(bins.missing->weight);
    measured.classWeights.push_back(bins.missing->classWeights);
  }
  for (std::size_t bin = 0; bin < measured.classWeights.size(); ++bin) {
    if (measured.binWeights[bin] == 0.0) continue;
    for (double& weight : measured.classWeights[bin]) weight += adjustment;
  }
  return measured;
}

std::optional<double> TakeLast(std::vector<std::optional<double>>& measures) {
  const std::optional<double> last = measures.back();
  measures.pop_back();
  return last;
}

bool IsInfinite(const std::optional<double>& weight) { return weight && std::isinf(*weight); }

}  // namespace

Evidence MeasureEvidence(const AttributeBins& bins, std::size_t event, double adjustment) {
  const bool hasMissing = bins.missing && bins.missing->weight > 0.0;
  const AttributeBins measured = BinsToMeasure(bins, adjustment, hasMissing);
  Evidence evidence;
  evidence.weights = WeightsOfEvidence(measured, event);
  evidence.values = InformationValueTerms(measured, event);
  evidence.informationValue = InformationValue(measured, event);
  evidence.valueWithoutMissing = evidence.informationValue;
  if (!hasMissing) return evidence;
  evidence.missingWeight = TakeLast(evidence.weights);
  evidence.missingValue = TakeLast(evidence.values);
  evidence.valueWithoutMissing = InformationValue(BinsToMeasure(bins, adjustment, false), event);
  return evidence;
}

Evidence MeasureEvidence(const BinModel& model, const AttributeBins& bins) {
  const VariableInfo* const target = model.GetTarget(bins);
  if (target == nullptr) {
    throw Refusal(RefusalCode::kEvidenceNeedsTarget, {},
                  "weight of evidence needs a target, and these bins have none");
  }
  return MeasureEvidence(bins, EventCategory(*target), model.settings.evidenceAdjustment);
}

double GetInfiniteWeight(const AttributeBins& bins, const Evidence& evidence) {
  double weight = IsInfinite(evidence.missingWeight) ? bins.missing->weight : 0.0;
  for (std::size_t bin = 0; bin < evidence.weights.size(); ++bin) {
    if (IsInfinite(evidence.weights[bin])) weight += bins.binWeights[bin];
  }
  return weight;
}

}  // namespace MCBinModel
