#include "binmodel/report/eventmeasures.h"

#include "binmodel/measure/discrimination.h"
#include "binmodel/measure/evidence.h"
#include "binmodel/report/reportcells.h"

namespace MCBinModel {

EventMeasures MeasureEvent(const BinModel& model, const AttributeBins& bins) {
  return MeasureEvent(model, bins, bins);
}

EventMeasures MeasureEvent(const BinModel& model, const AttributeBins& ranking,
                           const AttributeBins& counted) {
  if (!HasTwoClasses(model, counted) || counted.binWeights.empty()) return {};
  EventMeasures measures;
  measures.informationValue = MeasureEvidence(model, counted).informationValue;
  const auto discrimination =
      MeasureDiscrimination(ranking, counted, model.GetTarget(counted)->GetEvent());
  if (!discrimination) return measures;
  measures.areaUnderCurve = discrimination->areaUnderCurve;
  measures.gini = discrimination->GetGini();
  measures.kolmogorovSmirnov = discrimination->kolmogorovSmirnov;
  return measures;
}

}  // namespace MCBinModel
