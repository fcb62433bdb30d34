#pragma once

#include <string>
#include <string_view>

#include "csv/csvreader.h"

namespace MCBin {

// A text as a field of a CSV file (RFC 4180): in double quotes, with its own quotes doubled,
// when `quoted` says so or when it holds a quote, the delimiter or a line end.
void AppendCsvField(std::string& line, std::string_view text, bool quoted, char delimiter);

// Adds the fields of one record, each as it was quoted in its file.
class CsvLine {
 public:
  explicit CsvLine(char delimiter) : fDelimiter(delimiter) {}

  // Ends what was there before and begins a record.
  void Clear();
  void AddField(const CsvField& field);

  // A field as AppendCsvField made it.
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
