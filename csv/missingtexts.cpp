#include "csv/missingtexts.h"

#include <algorithm>

#include "binmodel/text/number.h"

namespace MCBin {

std::vector<std::string> PlainMissingTexts(std::vector<std::string> texts,
                                           const NumberFormat& numbers) {
  if (numbers.IsPlain()) return texts;
  for (std::string& text : texts) {
    const MCBinModel::ParsedNumber number = ParseNumber(text, numbers);
    if (number.kind == MCBinModel::NumberKind::kNumber) {
      text = MCBinModel::FormatNumber(number.value);
    }
  }
  return texts;
}

MissingTexts::MissingTexts(const std::vector<std::string>& texts) {
  for (const std::string_view blank : {" ", "\t"}) fMayBegin[FirstByte(blank)] = true;
  for (const std::string& text : texts) {
    if (text == "\"\"") fQuotedEmpty = true;
    const std::string_view trimmed = MCBinModel::TrimBlanks(text);
    if (trimmed.empty()) continue;
    fMayBegin[FirstByte(trimmed)] = true;
    const MCBinModel::ParsedNumber number = MCBinModel::ParseNumber(trimmed);
    if (number.kind == MCBinModel::NumberKind::kInfinite) AddInfinity(trimmed);
    const bool isNumber = number.kind == MCBinModel::NumberKind::kNumber;
    (isNumber ? fNumberTexts : fTexts).emplace_back(trimmed);
    if (isNumber) fNumbers.push_back(number.value);
  }
  if (fNumbers.empty()) return;
  for (const char c : std::string_view("+-.,0123456789")) fMayBegin[FirstByte({&c, 1})] = true;
}

// However it is written, too large numbers included.
void MissingTexts::AddInfinity(std::string_view text) {
  (text.front() == '-' ? fMinusInfinity : fInfinity) = true;
  for (const char c : std::string_view("+-.,0123456789iI")) fMayBegin[FirstByte({&c, 1})] = true;
}

bool MissingTexts::IsMissingText(const CsvField& field) const {
  const std::string_view text = MCBinModel::TrimBlanks(field.text);
  if (text.empty()) return !field.quoted || (fQuotedEmpty && field.text.empty());
  const auto isAmong = [](const auto& list, const auto& value) {
    return std::find(list.begin(), list.end(), value) != list.end();
  };
  if (isAmong(fTexts, text)) return true;
  if (fNumbers.empty() && !fInfinity && !fMinusInfinity) return false;
  const MCBinModel::ParsedNumber number = ParseNumber(field);
  if (number.kind == MCBinModel::NumberKind::kInfinite) {
    return text.front() == '-' ? fMinusInfinity : fInfinity;
  }
  return number.kind == MCBinModel::NumberKind::kNumber ? isAmong(fNumbers, number.value)
                                                        : isAmong(fNumberTexts, text);
}

}  // namespace MCBin
