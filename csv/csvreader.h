#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "csv/csvfield.h"
#include "csv/numberformat.h"
#include "io/unpacker.h"

namespace MCBin {

// Reads a CSV file record by record (RFC 4180).
//
//   Lines     end with LF, CRLF or CR; a UTF-8 byte-order mark is passed over.
//   Quotes    a quoted field may hold delimiters, line ends and doubled quotes. A quote
//             inside an unquoted field is an ordinary character.
//   Blanks    belong to their field. Blank lines are passed over; in a file of one column each is
//             a record of one empty field.
//   Packed    files of gzip and zstd, told by their first bytes, are unpacked.
//   Shape     every record has as many fields as the first one.
//   Memory    one record at a time, of at most kMaxRecordBytes; fields point into the
//             buffer and live until the next call of Next().
//   Failure   Refusal that names the file and the line: ragged or too long records,
//             bad quoting, NUL bytes, UTF-16, other packed files, read errors.
class CsvReader {
 public:
  static constexpr std::size_t kMaxRecordBytes = std::size_t{64} << 20;

  // Reads from the start of `file`, which stays the caller's; `name` is for messages.
  // `delimiter` is not a quote or a line end.
  CsvReader(int file, std::string name, char delimiter, const NumberFormat& numbers = {});

  // Reads the next record; false at the end of the file.
  bool Next();

  const std::vector<CsvField>& GetFields() const { return fFields; }

  // The line on which the record begins, from 1.
  std::uint64_t GetLine() const { return fLine; }

  // Bytes taken from the file so far, packed ones of a packed file.
  std::uint64_t GetBytesRead() const { return fUnpacker ? fUnpacker->GetBytesRead() : fBytesRead; }

  const std::string& GetName() const { return fName; }

  // "name:line" of the record, for messages.
  std::string Where() const { return Where(fLine); }
  std::string Where(std::uint64_t line) const;

 private:
  enum class Outcome { kRecord, kNeedsMore, kEnd };

  bool NextRecord();
  Outcome ParseRecord();
  const char* ParseUnquoted(const char* begin);
  const char* ParseQuoted(const char* open);
  Outcome FinishRecord(const char* next);
  void AddField(const char* begin, const char* end, bool quoted,
                std::optional<double> decimal = std::nullopt);
  void UndoubleQuotes();
  void Refill();
  void MakeRoom();
  void CheckFileKind() const;
  std::size_t ReadMore(std::size_t room);
  bool IsBlankLine() const;
  void CheckShape() const;
  [[noreturn]] void RefuseNul() const;

  const int fFile;
  const std::string fName;
  const char fDelimiter;
  const bool fIsDelimiterInNumbers;
  const NumberFormat fNumbers;
  std::unique_ptr<Unpacker> fUnpacker;  // of a packed file
  bool fIsSpecial[256] = {};            // ends the run of ordinary characters of an unquoted field

  std::unique_ptr<char[]> fBuffer;  // one more byte than its capacity: a NUL after the data
  std::size_t fCapacity = 0;
  char* fBegin = nullptr;  // of what is not parsed yet
  char* fEnd = nullptr;    // of the data; *fEnd is NUL
  bool fAtFileEnd = false;
  std::uint64_t fBytesRead = 0;

  std::vector<CsvField> fFields;
  std::vector<std::size_t> fWithDoubledQuotes;  // indices into fFields
  std::size_t fFieldCount = 0;                  // of every record; 0 before the first
  std::uint64_t fLine = 0;
  std::uint64_t fNextLine = 1;
  std::uint64_t fLinesInRecord = 0;  // line ends inside its quoted fields
};

}  // namespace MCBin
