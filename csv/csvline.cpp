#include "csv/csvline.h"

#include <algorithm>

#include "binmodel/text/escape.h"

namespace MCBin {

void AppendCsvField(std::string& line, std::string_view text, bool quoted, char delimiter) {
  const auto isSpecial = [delimiter](char c) {
    return c == delimiter || c == '"' || c == '\n' || c == '\r';
  };
  if (!quoted && std::none_of(text.begin(), text.end(), isSpecial)) {
    line += text;
    return;
  }
  line += MCBinModel::QuoteDoubled(text, '"');
}

void CsvLine::Clear() {
  fText.clear();
  fIsEmpty = true;
}

void CsvLine::Separate() {
  if (!fIsEmpty) fText += fDelimiter;
  fIsEmpty = false;
}

void CsvLine::AddField(const CsvField& field) {
  Separate();
  AppendCsvField(fText, field.text, field.quoted, fDelimiter);
}

void CsvLine::AddReadyField(std::string_view field) {
  Separate();
  fText += field;
}

std::string_view CsvLine::Finish() {
  fText += '\n';
  return fText;
}

}  // namespace MCBin
