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
  }
}

bool MissingTexts::IsMissingText(const CsvField& field) const {
  const std::string_view text = MCBinModel::TrimBlanks(field.text);
  if (text.empty()) return !field.quoted || (fQuotedEmpty && field.text.empty());
  return std::find(fTexts.begin(), fTexts.end(), text) != fTexts.end();
}

}  // namespace MCBin
