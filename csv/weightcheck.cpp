#include "csv/weightcheck.h"

#include <fmt/format.h>

#include <limits>

#include "binmodel/model/refusal.h"
#include "binmodel/text/displaytext.h"
#include "binmodel/text/number.h"

namespace MCBin {

using MCBinModel::NumberKind;

std::optional<double> WeightCheck::Check(const CsvReader& reader) {
  constexpr double kNaN = std::numeric_limits<double>::quiet_NaN();
  const CsvField& field = reader.GetFields()[fPosition];
  if (fMissingTexts.IsMissing(field)) return fCoder.Code(kNaN);

  const MCBinModel::ParsedNumber number = ParseNumber(field);
  const char* problem = "is negative";
  switch (number.kind) {
    case NumberKind::kNaN:
      return fCoder.Code(kNaN);
    case NumberKind::kNumber:
      try {
        return fCoder.Code(number.value);
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
      MCBinModel::RefusalCode::kBadWeight, {reader.Where(), fWeight.name, std::string(field.text)},
      fmt::format("the weight {} in column {} {}; weights are numbers from 0 up, an empty field "
                  "drops the record",
                  MCBinModel::QuotedText(field.text), MCBinModel::QuotedText(fWeight.name),
                  problem));
}

}  // namespace MCBin
