#include "csv/csvline.h"

#include "binmodel/text/escape.h"

namespace MCBin {

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
  MCBinModel::AppendField(fText, field.text, field.quoted, fDelimiter);
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
