#include "csv/missingtexts.h"

#include <algorithm>

#include "binmodel/text/number.h"

namespace MCBin {

MissingTexts::MissingTexts(const std::vector<std::string>& texts) {
  for (const std::string_view blank : {" ", "\t"}) fMayBegin[FirstByte(blank)] = true;
  for (const std::string& text : texts) {
    if (text == "\"\"") fQuotedEmpty = true;
    const std::string_view trimmed = MCBinModel::TrimBlanks(text);
    if (trimmed.empty()) continue;
    fTexts.emplace_back(trimmed);
    fMayBegin[FirstByte(trimmed)] = true;
    const MCBinModel::ParsedNumber number = MCBinModel::ParseNumber(trimmed);
    if (number.kind == MCBinModel::NumberKind::kNumber) fNumbers.push_back(number.value);
  }
  if (fNumbers.empty()) return;
  for (const char c : std::string_view("+-.,0123456789")) fMayBegin[FirstByte({&c, 1})] = true;
}

bool MissingTexts::IsMissingText(const CsvField& field) const {
  const std::string_view text = MCBinModel::TrimBlanks(field.text);
  if (text.empty()) return !field.quoted || (fQuotedEmpty && field.text.empty());
  if (std::find(fTexts.begin(), fTexts.end(), text) != fTexts.end()) return true;
  if (fNumbers.empty()) return false;
  const MCBinModel::ParsedNumber number = ParseNumber(field);
  return number.kind == MCBinModel::NumberKind::kNumber &&
         std::find(fNumbers.begin(), fNumbers.end(), number.value) != fNumbers.end();
}

}  // namespace MCBin
