#pragma once

#include <string>
#include <string_view>

#include "csv/csvreader.h"

namespace MCBin {

// Adds the fields of one record, each as it was quoted in its file.
class CsvLine {
 public:
  explicit CsvLine(char delimiter) : fDelimiter(delimiter) {}

  // Ends what was there before and begins a record.
  void Clear();
  void AddField(const CsvField& field);

  // A field as MCBinModel::AppendField made it.
  void AddReadyField(std::string_view field);

  // The record so far, with its line end.
  std::string_view Finish();

 private:
  void Separate();

  const char fDelimiter;
  bool fIsEmpty = true;
  std::string fText;
};

}  // namespace MCBin
