#include "cli/missingtexts.h"

#include <algorithm>

#include "cli/number.h"

namespace MCBin {

MissingTexts::MissingTexts(const std::vector<std::string>& texts) {
  for (const std::string& text : texts) {
    if (text == "\"\"") fQuotedEmpty = true;
    const std::string_view trimmed = TrimBlanks(text);
    if (trimmed.empty()) continue;
    fTexts.emplace_back(trimmed);
    fFirstBytes[static_cast<unsigned char>(trimmed.front())] = true;
  }
}

bool MissingTexts::IsMissing(const CsvField& field) const {
  const std::string_view text = TrimBlanks(field.text);
  if (text.empty()) return !field.quoted || (fQuotedEmpty && field.text.empty());
  if (!fFirstBytes[static_cast<unsigned char>(text.front())]) return false;
  return std::find(fTexts.begin(), fTexts.end(), text) != fTexts.end();
}

}  // namespace MCBin
