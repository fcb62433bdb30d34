#include "csv/fieldcoder.h"

#include <fmt/format.h>

#include <limits>

#include "binmodel/model/refusal.h"
#include "binmodel/text/displaytext.h"

namespace MCBin {

double FieldCoder::Code(const CsvReader& reader) {
  const CsvField& field = reader.GetFields()[fPosition];
  if (fMissingTexts.IsMissing(field)) return std::numeric_limits<double>::quiet_NaN();
  const bool isNumber =
      field.decimal && fVariable.kind != MCBinModel::VariableKind::kStringCategorical;
  try {
    const MCBinModel::CodedValue coded =
        isNumber ? fCoder.Code(*field.decimal) : fCoder.Code(field.text);
    if (coded.isUnknown && fUnknownCount++ == 0) {
      fFirstUnknown =
          fmt::format("{} in line {}", MCBinModel::QuotedText(field.text), reader.GetLine());
    }
    return coded.value;
  } catch (const MCBinModel::Refusal& refusal) {
    throw MCBinModel::Refusal(refusal.GetCode(),
                              {reader.Where(), refusal.GetSubject(), refusal.GetDetail()},
                              refusal.GetReason());
  }
}

std::optional<std::string> FieldCoder::DescribeUnknown() const {
  if (fUnknownCount == 0) return std::nullopt;
  return fmt::format(
      "column {}: values that the bin file does not know count as missing: {}, the first is {}",
      MCBinModel::QuotedText(fVariable.name), fUnknownCount, fFirstUnknown);
}

}  // namespace MCBin
