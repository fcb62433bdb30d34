#include "binmodel/apply/weightcoder.h"

#include <fmt/format.h>

#include <cmath>

#include "binmodel/model/refusal.h"
#include "binmodel/model/usermissing.h"
#include "binmodel/text/displaytext.h"
#include "binmodel/text/number.h"
#include "common/missing.h"

namespace MCBinModel {

WeightCoder::WeightCoder(const WeightInfo& weight)
    : fName(weight.name),
      fUserMissing(MakeNumericUserMissing(weight.missing)),
      fEncoder(weight.rounding) {}

std::optional<double> WeightCoder::Code(double weight) {
  if (std::isnan(weight) || MCMV::IsMissing(weight) || fUserMissing->Contains(weight)) {
    ++fDropped.missing;
    return std::nullopt;
  }
  if (weight < 0.0 || std::isinf(weight)) {
    const std::string text = FormatNumber(weight);
    throw Refusal(RefusalCode::kBadWeight, {{}, fName, text},
                  fmt::format("the weight {} in column {} is {}; weights are numbers from 0 up",
                              text, QuotedText(fName), weight < 0.0 ? "negative" : "infinite"));
  }
  if (weight == 0.0) {
    ++fDropped.zero;
    return std::nullopt;
  }
  const double rounded = fEncoder.Encode(weight);
  if (MCMV::IsMissing(rounded)) {
    ++fDropped.roundedToZero;
    return std::nullopt;
  }
  return rounded;
}

void WeightCoder::CheckRecordsLeft(std::uint64_t recordCount, const std::string& place) const {
  if (fDropped.GetTotal() < recordCount) return;
  throw Refusal(
      RefusalCode::kNoRecords, {place, fName, {}},
      fmt::format("no record has a usable weight: {} missing, {} zero, {} rounded to zero",
                  fDropped.missing, fDropped.zero, fDropped.roundedToZero));
}

}  // namespace MCBinModel
