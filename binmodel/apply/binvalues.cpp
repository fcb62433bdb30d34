#include "binmodel/apply/binvalues.h"

#include "binmodel/measure/evidence.h"
#include "binmodel/model/binlookup.h"

namespace MCBinModel {

namespace {

BinValue ValueOf(const std::optional<double>& weight) {
  return weight ? BinValue(*weight) : BinValue();
}

}  // namespace

std::vector<BinValue> MakeBinValues(const BinModel& model, const AttributeBins& bins,
                                    BinForm form) {
  std::vector<BinValue> values(bins.cutPoints.size() + 1);
  if (form == BinForm::kWeightOfEvidence) {
    const Evidence evidence = MeasureEvidence(model, bins);
    for (std::size_t bin = 0; bin < evidence.weights.size(); ++bin) {
      values[bin] = ValueOf(evidence.weights[bin]);
    }
    return values;
  }
  for (std::size_t bin = 0; bin < values.size(); ++bin) {
    if (form == BinForm::kIndex) {
      values[bin] = static_cast<std::int64_t>(bin);
    } else {
      values[bin] =
          BinLabel(model.GetAttribute(bins), bins.cutPoints, bin, model.settings.rightClosed);
    }
  }
  return values;
}

BinValue MakeMissingValue(const BinModel& model, const AttributeBins& bins, BinForm form) {
  if (form == BinForm::kWeightOfEvidence) {
    return ValueOf(MeasureEvidence(model, bins).missingWeight);
  }
  const bool hasLabel = form == BinForm::kLabel && bins.missing;
  return hasLabel ? BinValue(kMissingLabel) : BinValue();
}

}  // namespace MCBinModel
