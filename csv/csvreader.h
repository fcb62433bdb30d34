#pragma once

#include <cstddef>
#include <cstdint>
#include <exception>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "csv/csvblock.h"
#include "csv/csvrecord.h"
#include "csv/numberformat.h"
#include "csv/recordparser.h"
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
  static constexpr std::size_t kChunkBytes = std::size_t{1} << 18;

  // Reads from the start of `file`, which stays the caller's; `name` is for messages.
  // `delimiter` is not a quote or a line end.
  // `chunkBytes` is how much it reads at a time, and the usual size of a block.
  CsvReader(int file, std::string name, char delimiter, const NumberFormat& numbers = {},
            std::size_t chunkBytes = kChunkBytes);

  // Reads the next record; false at the end of the file.
  bool Next();

  // Hands out whole records that follow the one it has come to, as they are in the file, and goes
  // on behind them. False where Next() has to be called: at the end of the file, before a record
  // that is longer than a chunk, and before a failure to read. Requires that the first record has
  // been read. What `block` held before is used anew.
  bool TakeBlock(CsvBlock& block);

  // A parser for the records of a block that it handed out. Borrows the block.
  RecordParser MakeParser(const CsvBlock& block) const;

  const CsvRecord& GetRecord() const { return fParser.GetRecord(); }
  const std::vector<CsvField>& GetFields() const { return GetRecord().fields; }

  // The line on which the record begins, from 1.
  std::uint64_t GetLine() const { return GetRecord().line; }

  // What it reads by, and how many fields every record has, once the first one has been read.
  const RecordParser& GetParser() const { return fParser; }

  // Bytes taken from the file so far, packed ones of a packed file.
  std::uint64_t GetBytesRead() const { return fUnpacker ? fUnpacker->GetBytesRead() : fBytesRead; }

  const std::string& GetName() const { return GetRecord().fileName; }

  // "name:line" of the record, for messages.
  std::string Where() const { return GetRecord().Where(); }

 private:
  std::size_t GetPendingBytes() const;
  std::size_t GetRoom() const;
  void KeepRest(const char* rest);
  void MoveTo(std::size_t capacity);
  void MakeRoom();
  void Refill();
  void ReadAhead();
  void ReadOn();
  std::size_t ReadMore();
  void CheckFileKind(std::string_view start) const;

  const int fFile;
  std::unique_ptr<Unpacker> fUnpacker;  // of a packed file

  TextBuffer fBuffer;
  const std::size_t fLargestBlock;
  char* fEnd = nullptr;  // of the data; *fEnd is NUL
  bool fAtFileEnd = false;
  std::uint64_t fBytesRead = 0;
  std::exception_ptr fFailure;  // met ahead of what was asked for

  RecordParser fParser;  // of the data
};

}  // namespace MCBin
