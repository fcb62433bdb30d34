#include "csv/fieldcoder.h"

#include <fmt/format.h>

#include <limits>

#include "binmodel/model/refusal.h"
#include "binmodel/text/displaytext.h"

namespace MCBin {

double FieldCoder::Code(const CsvReader& reader) {
  const CsvField& field = reader.GetFields()[fPosition];
  if (fMissingTexts.IsMissing(field)) return std::numeric_limits<double>::quiet_NaN();
  try {
    const bool isOfNumbers =
        fVariable.kind == MCBinModel::VariableKind::kContinuous && !fVariable.isTime;
    if (field.isText && isOfNumbers) RefuseText(field);
    const MCBinModel::CodedValue coded = CodeField(field);
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

MCBinModel::CodedValue FieldCoder::CodeField(const CsvField& field) const {
  constexpr MCBinModel::CodedValue kUnknown = {std::numeric_limits<double>::quiet_NaN(), true};
  if (fVariable.kind == MCBinModel::VariableKind::kStringCategorical || fVariable.isTime) {
    return fCoder.Code(field.text);
  }
  if (field.decimal) return fCoder.Code(*field.decimal);
  return field.isText ? kUnknown : fCoder.Code(field.text);
}

void FieldCoder::RefuseText(const CsvField& field) const {
  throw MCBinModel::Refusal(
      MCBinModel::RefusalCode::kTextAmongNumbers, {{}, fVariable.name, std::string(field.text)},
      fmt::format("{} in column {} is not a number", MCBinModel::QuotedText(field.text),
                  MCBinModel::QuotedText(fVariable.name)));
}

std::optional<std::string> FieldCoder::DescribeUnknown() const {
  if (fUnknownCount == 0) return std::nullopt;
  return fmt::format(
      "column {}: values that the bin file does not know count as missing: {}, the first is {}",
      MCBinModel::QuotedText(fVariable.name), fUnknownCount, fFirstUnknown);
}

}  // namespace MCBin
