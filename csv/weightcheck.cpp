#include "csv/weightcheck.h"

#include <fmt/format.h>

#include "binmodel/model/refusal.h"
#include "binmodel/model/usermissing.h"
#include "binmodel/text/displaytext.h"
#include "binmodel/text/number.h"
#include "common/missing.h"

namespace MCBin {

WeightCheck::WeightCheck(const ColumnRequest& weight, IBINVariable::BINWRoundingOption rounding,
                         const MissingTexts& missingTexts,
                         const MCBinModel::MissingDefinition& missing)
    : fWeight(weight),
      fMissingTexts(missingTexts),
      fUserMissing(MCBinModel::MakeNumericUserMissing(missing)),
      fEncoder(rounding) {}

std::optional<double> WeightCheck::Check(const CsvReader& reader) {
  const CsvField& field = reader.GetFields()[fWeight.position];
  const bool missing = fMissingTexts.IsMissing(field);
  const MCBinModel::ParsedNumber weight =
      missing ? MCBinModel::ParsedNumber{MCBinModel::NumberKind::kNaN, 0.0} : ParseNumber(field);
  const bool userMissing =
      weight.kind == MCBinModel::NumberKind::kNumber && fUserMissing->Contains(weight.value);
  if (weight.kind == MCBinModel::NumberKind::kNaN || userMissing) {
    ++fDropped.missing;
    return std::nullopt;
  }
  if (weight.kind != MCBinModel::NumberKind::kNumber || weight.value < 0.0) {
    const char* const problem = weight.kind == MCBinModel::NumberKind::kText ? "is not a number"
                                : weight.kind == MCBinModel::NumberKind::kInfinite ? "is infinite"
                                                                                   : "is negative";
    throw MCBinModel::Refusal(
        fmt::format("{}: the weight {} in column {} {}; weights are numbers from 0 "
                    "up, an empty field drops the record",
                    reader.Where(), MCBinModel::QuotedText(field.text),
                    MCBinModel::QuotedText(fWeight.name), problem));
  }
  if (weight.value == 0.0) {
    ++fDropped.zero;
    return std::nullopt;
  }
  const double rounded = fEncoder.Encode(weight.value);
  if (MCMV::IsMissing(rounded)) {
    ++fDropped.roundedToZero;
    return std::nullopt;
  }
  return rounded;
}

}  // namespace MCBin
