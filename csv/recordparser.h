#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

#include "csv/csvrecord.h"
#include "csv/csvsyntax.h"
#include "csv/numberformat.h"

namespace MCBin {

// Parses the records of a CSV text in memory, which may come in pieces: see CsvReader for what it
// takes and refuses.
class RecordParser {
 public:
  enum class Outcome { kRecord, kNeedsMore, kEnd };

  // `name` is that of the file, for messages.
  RecordParser(std::string name, char delimiter, const NumberFormat& numbers);

  // Goes on with another text, which begins with what was not parsed of the last one; `isLast` says
  // that nothing follows it. Borrows it, and changes the doubled quotes of records that are parsed.
  // Requires *end == '\0'.
  void SetText(char* begin, char* end, bool isLast);

  // Goes on to the next record.
  Outcome Next();

  // The last one; its fields point into the text.
  const CsvRecord& GetRecord() const { return fRecord; }

  // What is not parsed yet.
  char* GetBegin() const { return fBegin; }

  // The line of what is not parsed yet; what is parsed elsewhere is passed over.
  std::uint64_t GetNextLine() const { return fNextLine; }
  void GoToLine(std::uint64_t line) { fNextLine = line; }

  // How many fields every record has; 0 before the first one.
  std::size_t GetFieldCount() const { return fFieldCount; }

  const CsvSyntax& GetSyntax() const { return fSyntax; }
  const NumberFormat& GetNumbers() const { return fNumbers; }

  // Numbers in digits can be told while the end of their field is looked for.
  bool HasPlainDecimals() const { return fHasPlainDecimals; }

 private:
  Outcome ParseRecord();
  const char* ParseUnquoted(const char* begin);
  const char* ParseQuoted(const char* open);
  Outcome FinishRecord(const char* next);
  void UndoubleQuotes();
  bool IsBlankLine() const;
  void CheckShape() const;
  [[noreturn]] void RefuseNul(std::uint64_t line) const;

  const CsvSyntax fSyntax;
  const NumberFormat fNumbers;
  const bool fHasPlainDecimals;

  char* fBegin = nullptr;
  char* fEnd = nullptr;
  bool fIsLast = false;

  CsvRecord fRecord;
  std::vector<std::size_t> fWithDoubledQuotes;  // indices of fields
  std::size_t fFieldCount = 0;
  std::uint64_t fNextLine = 1;
  std::uint64_t fLinesInRecord = 0;  // line ends inside its quoted fields
};

}  // namespace MCBin
