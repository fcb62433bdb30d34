#include "binmodel/apply/binvalues.h"

#include "binmodel/measure/binstatistics.h"
#include "binmodel/model/binlookup.h"
#include "binmodel/model/refusal.h"

namespace MCBinModel {

namespace {

std::vector<BinValue> EvidenceValues(const BinModel& model, const AttributeBins& bins) {
  const VariableInfo* const target = model.GetTarget(bins);
  if (target == nullptr) {
    throw Refusal(RefusalCode::kEvidenceNeedsTarget, {},
                  "weight of evidence needs a target, and equal-frequency bins have none");
  }
  std::vector<BinValue> values(bins.cutPoints.size() + 1);
  const auto evidence = WeightsOfEvidence(bins, EventCategory(*target));
  for (std::size_t bin = 0; bin < evidence.size(); ++bin) {
    if (evidence[bin]) values[bin] = *evidence[bin];
  }
  return values;
}

}  // namespace

std::vector<BinValue> MakeBinValues(const BinModel& model, const AttributeBins& bins,
                                    BinForm form) {
  if (form == BinForm::kWeightOfEvidence) return EvidenceValues(model, bins);
  std::vector<BinValue> values;
  for (std::size_t bin = 0; bin <= bins.cutPoints.size(); ++bin) {
    if (form == BinForm::kIndex) {
      values.emplace_back(static_cast<std::int64_t>(bin));
    } else {
      values.emplace_back(
          BinLabel(model.GetAttribute(bins), bins.cutPoints, bin, model.settings.rightClosed));
    }
  }
  return values;
}

}  // namespace MCBinModel
