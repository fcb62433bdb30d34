#include "csv/weightcheck.h"

#include <fmt/format.h>

#include <limits>

#include "binmodel/model/refusal.h"
#include "binmodel/text/displaytext.h"
#include "binmodel/text/number.h"

namespace MCBin {

using MCBinModel::NumberKind;

std::optional<double> WeightCheck::Add(double weight) {
  const std::uint64_t roundedToZero = fCoder.GetDropped().roundedToZero;
  const std::optional<double> rounded = fCoder.Code(weight);
  if (!rounded && fCoder.GetDropped().roundedToZero == roundedToZero) return rounded;
  fSum += weight;
  fRoundedSum += rounded.value_or(0.0);
  if (rounded != weight) ++fRoundedCount;
  return rounded;
}

std::optional<std::string> WeightCheck::DescribeRounding() const {
  if (fRoundedCount == 0) return std::nullopt;
  constexpr double kPercent = 100.0;
  return fmt::format(
      "column {}: {} weights are no whole numbers and were rounded; their total changed from "
      "{:.10g} "
      "to {:.10g} ({:+.2f}%)",
      MCBinModel::QuotedText(fWeight.name), fRoundedCount, fSum, fRoundedSum,
      kPercent * (fRoundedSum / fSum - 1.0));
}

MCBinModel::ParsedNumber WeightCheck::Parse(const CsvField& field) const {
  if (fMissingTexts.IsMissing(field)) return {NumberKind::kNaN, 0.0};
  return ParseNumber(field);
}

std::optional<double> WeightCheck::Check(const CsvRecord& record) {
  const CsvField& field = record.fields[fPosition];
  const MCBinModel::ParsedNumber number = Parse(field);
  const char* problem = "is negative";
  switch (number.kind) {
    case NumberKind::kNaN:
      return Add(std::numeric_limits<double>::quiet_NaN());
    case NumberKind::kNumber:
      try {
        return Add(number.value);
      } catch (const MCBinModel::Refusal&) {  // of a finite number: it is negative
        break;
      }
    case NumberKind::kInfinite:
      problem = "is infinite";
      break;
    case NumberKind::kText:
      problem = "is not a number";
      break;
  }
  throw MCBinModel::Refusal(
      MCBinModel::RefusalCode::kBadWeight, {record.Where(), fWeight.name, std::string(field.text)},
      fmt::format("the weight {} in column {} {}; weights are numbers from 0 up, an empty field "
                  "drops the record",
                  MCBinModel::QuotedText(field.text), MCBinModel::QuotedText(fWeight.name),
                  problem));
}

}  // namespace MCBin
