#include "binmodel/apply/fieldcoder.h"

#include <fmt/format.h>

#include <algorithm>
#include <cfloat>
#include <limits>

#include "binmodel/model/refusal.h"
#include "binmodel/model/usermissing.h"
#include "binmodel/text/displaytext.h"
#include "binmodel/text/number.h"
#include "common/missing.h"

namespace MCBinModel {

namespace {

constexpr double kInfinity = std::numeric_limits<double>::infinity();

}  // namespace

FieldCoder::FieldCoder(const VariableInfo& variable, std::size_t position,
                       const MCBin::MissingTexts& missingTexts)
    : fVariable(variable),
      fPosition(position),
      fMissingTexts(missingTexts),
      fUserMissing(MakeNumericUserMissing(variable.missing)) {
  if (variable.kind == VariableKind::kNumericCategorical) fNumbers.emplace(variable.numbers);
  if (variable.kind == VariableKind::kStringCategorical) fTexts.emplace(variable.texts);
}

std::optional<double> FieldCoder::Code(const MCBin::CsvReader& reader) {
  const MCBin::CsvField& field = reader.GetFields()[fPosition];
  if (fMissingTexts.IsMissing(field)) return std::nullopt;
  if (fNumbers) return CodeNumericCategory(reader, field);
  if (fTexts) return CodeTextCategory(reader, field);
  return CodeNumber(reader, field);
}

std::optional<double> FieldCoder::CodeNumber(const MCBin::CsvReader& reader,
                                             const MCBin::CsvField& field) const {
  const ParsedNumber number = ParseNumber(field);
  double value = number.value;
  switch (number.kind) {
    case NumberKind::kNaN:
      return std::nullopt;
    case NumberKind::kText:
      throw Refusal(
          fmt::format("{}: {} in column {} is not a number; use --na for texts that mean missing",
                      reader.Where(), QuotedText(field.text), QuotedText(fVariable.name)));
    case NumberKind::kInfinite:
      value = TrimBlanks(field.text).front() == '-' ? -kInfinity : kInfinity;
      break;
    case NumberKind::kNumber:
      break;
  }
  if (MCMV::IsMissing(value) || IsUserMissing(value)) return std::nullopt;
  return value;
}

bool FieldCoder::IsUserMissing(double value) const {
  if (fUserMissing->Contains(value)) return true;
  const auto& interval = fVariable.missing.interval;
  if (!interval) return false;
  return (interval->low == -DBL_MAX && value == -kInfinity) ||
         (interval->high == DBL_MAX && value == kInfinity);
}

std::optional<double> FieldCoder::CodeNumericCategory(const MCBin::CsvReader& reader,
                                                      const MCBin::CsvField& field) {
  const ParsedNumber number = ParseNumber(field);
  if (number.kind == NumberKind::kNaN) return std::nullopt;
  if (number.kind != NumberKind::kNumber) return CountUnknown(reader, field);
  if (MCMV::IsMissing(number.value) || IsUserMissing(number.value)) return std::nullopt;
  const double code = fNumbers->EncodeConst(number.value);
  return code >= 0.0 ? code : CountUnknown(reader, field);
}

std::optional<double> FieldCoder::CodeTextCategory(const MCBin::CsvReader& reader,
                                                   const MCBin::CsvField& field) {
  const std::vector<std::string>& missing = fVariable.missing.texts;
  if (std::find(missing.begin(), missing.end(), field.text) != missing.end()) return std::nullopt;
  fText.assign(field.text);
  const double code = fTexts->EncodeConst(fText);
  return code >= 0.0 ? code : CountUnknown(reader, field);
}

std::optional<double> FieldCoder::CountUnknown(const MCBin::CsvReader& reader,
                                               const MCBin::CsvField& field) {
  if (fUnknownCount++ == 0) {
    fFirstUnknown = fmt::format("{} in line {}", QuotedText(field.text), reader.GetLine());
  }
  return std::nullopt;
}

std::optional<std::string> FieldCoder::DescribeUnknown() const {
  if (fUnknownCount == 0) return std::nullopt;
  return fmt::format(
      "column {}: values that the bin file does not know count as missing: {}, the first is {}",
      QuotedText(fVariable.name), fUnknownCount, fFirstUnknown);
}

}  // namespace MCBinModel
