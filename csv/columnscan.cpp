#include "csv/columnscan.h"

#include <algorithm>
#include <cmath>

#include "binmodel/model/usermissing.h"
#include "binmodel/text/number.h"
#include "common/missing.h"
#include "csv/numberformat.h"

namespace MCBin {

namespace {

constexpr double kNoCategory = -1.0;
constexpr std::size_t kMostStrayTexts = 5;

ColumnScan::Sighting MakeSighting(std::uint64_t line, std::string_view text) {
  constexpr std::size_t kShownBytes = 100;
  return {line, std::string(text.substr(0, kShownBytes)), text.size()};
}

}  // namespace

ColumnScan::ColumnScan(const ColumnRequest& request)
    : fMayBeCategorical(request.MayBeCategorical()) {
  if (!fMayBeCategorical) return;
  fNumbers.emplace(kMaxCategories + 1);
  fTexts.emplace(kMaxCategories + 1);
  const MCBinModel::MissingDefinition missing = request.missing.ForEitherKind();
  if (missing.IsEmpty()) return;
  fNumbers->SetUserMissingInfo(MCBinModel::MakeNumericUserMissing(missing).release());
  fTexts->SetUserMissingInfo(MCBinModel::MakeStringUserMissing(missing).release());
}

ColumnScan::Value ColumnScan::GetMissing() const {
  return {fMayBeCategorical ? kNoCategory : MCMV::Missing(), kNoCategory};
}

ColumnScan::Value ColumnScan::Add(const CsvField& field, std::uint64_t line, bool counts) {
  Value value = GetMissing();
  ++fFieldCount;
  if (!fFirstText) value.ifNumeric = AddNumber(field, line, counts);
  if (fFirstText && fDifferentTexts.size() <= kMostStrayTexts) CountText(field);
  if (fTexts && counts) value.ifTexts = AddText(field.text, line);
  return value;
}

double ColumnScan::AddNumber(const CsvField& field, std::uint64_t line, bool counts) {
  const MCBinModel::ParsedNumber number = ParseNumber(field);
  fIsWhole = fIsWhole && number.kind == MCBinModel::NumberKind::kNumber &&
             number.value == std::trunc(number.value);
  LookForDecimalPoint(field, number);
  if (number.kind == MCBinModel::NumberKind::kNumber && !fMayBeCategorical) return number.value;
  if (number.kind == MCBinModel::NumberKind::kText) {
    fFirstText = MakeSighting(line, field.text);
    fNumbers.reset();
  }
  if (number.kind == MCBinModel::NumberKind::kInfinite && !fFirstInfinite) {
    fFirstInfinite = MakeSighting(line, field.text);
  }
  if (number.kind != MCBinModel::NumberKind::kNumber || !fNumbers || !counts)
    return GetMissing().ifNumeric;
  const double code = fNumbers->Encode(number.value);
  if (fNumbers->GetNumberOfCategories() > kMaxCategories) {
    fFirstNumberBeyond = MakeSighting(line, field.text);
    fNumbers.reset();
  }
  return code;
}

void ColumnScan::LookForDecimalPoint(const CsvField& field,
                                     const MCBinModel::ParsedNumber& number) {
  const bool mayHaveOne = !fHasDecimalPoint && number.kind == MCBinModel::NumberKind::kNumber &&
                          number.value != std::trunc(number.value);
  if (!mayHaveOne) return;
  constexpr NumberFormat kComma{',', '.'};
  fHasDecimalPoint = ParseNumber(field.text, kComma).kind != MCBinModel::NumberKind::kNumber;
}

void ColumnScan::CountText(const CsvField& field) {
  const MCBinModel::ParsedNumber number = ParseNumber(field);
  LookForDecimalPoint(field, number);
  if (number.kind != MCBinModel::NumberKind::kText) return;
  ++fTextFieldCount;
  const auto [line, text, bytes] = MakeSighting(0, MCBinModel::TrimBlanks(field.text));
  fHasCutText = fHasCutText || text.size() < bytes;
  const bool isNew =
      std::find(fDifferentTexts.begin(), fDifferentTexts.end(), text) == fDifferentTexts.end();
  if (isNew) fDifferentTexts.push_back(text);
}

std::optional<ColumnScan::StrayTexts> ColumnScan::GetStrayTexts() const {
  const bool areStray = fTextFieldCount > 0 && fDifferentTexts.size() <= kMostStrayTexts &&
                        fTextFieldCount < fFieldCount - fTextFieldCount;
  if (!areStray) return std::nullopt;
  return StrayTexts{fTextFieldCount, fFieldCount - fTextFieldCount, fDifferentTexts, !fHasCutText};
}

double ColumnScan::AddText(std::string_view text, std::uint64_t line) {
  double code = kNoCategory;
  const bool tooLong = text.size() > kMaxCategoryBytes;
  if (!tooLong) {
    fTextBuffer.assign(text);
    code = fTexts->Encode(fTextBuffer);
  }
  if (tooLong || fTexts->GetNumberOfCategories() > kMaxCategories) {
    fFirstTextBeyond = MakeSighting(line, text);
    fTexts.reset();
  }
  return code;
}

const std::optional<ColumnScan::Sighting>& ColumnScan::GetFirstBeyond() const {
  return IsNumeric() ? fFirstNumberBeyond : fFirstTextBeyond;
}

int ColumnScan::GetCategoryCount() const {
  return IsNumeric() ? fNumbers->GetNumberOfCategories() : fTexts->GetNumberOfCategories();
}

}  // namespace MCBin
