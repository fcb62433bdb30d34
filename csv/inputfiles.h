#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "csv/columnnames.h"
#include "csv/csvreader.h"
#include "csv/numberformat.h"
#include "io/inputstream.h"

namespace MCBin {

// CSV files of one shape, which are read one after the other as if they were one: all have the
// header of the first.
class InputFiles {
 public:
  // Opens the first and reads its header. Of the others the headers are compared at once, where
  // they are regular files. "-" is standard input. Throws Refusal for a file that cannot be read or
  // has another header, and Interrupt::Requested. Requires at least one path.
  InputFiles(std::vector<std::string> paths, char delimiter, const NumberFormat& numbers,
             std::size_t chunkBytes = CsvReader::kChunkBytes);  // see CsvReader

  // Goes on to the next file, of which the reader has read the header; false after the last one.
  bool OpenNext();

  // Of the file that it has come to, which stays open until the next one is.
  CsvReader& GetReader() { return *fReader; }
  const ColumnNames& GetNames() const { return *fNames; }

  bool AreSeveral() const { return fPaths.size() > 1; }

  // For messages: all names; that of the first file.
  std::string GetName() const;
  const std::string& GetFirstName() const { return fDisplayNames.front(); }

  // Lines of all files are counted through. What comes before the lines of the reader; the file and
  // the line of a line that has been read, such as "may.csv:12".
  std::uint64_t GetLinesBefore() const { return fLinesBefore.back(); }
  std::string Where(std::uint64_t line) const;

  // Bytes of all files, 0 where one is no regular file; those that have been read.
  std::uint64_t GetSize() const;
  std::uint64_t GetBytesRead() const { return fBytesBefore + fReader->GetBytesRead(); }

 private:
  void Open(std::size_t index);
  void CheckNames(const ColumnNames& names) const;

  const std::vector<std::string> fPaths;
  const char fDelimiter;
  const NumberFormat fNumbers;
  const std::size_t fChunkBytes;
  std::vector<std::string> fDisplayNames;
  std::vector<std::uint64_t> fSizes;  // 0 of what is no regular file
  std::size_t fIndex = 0;
  std::optional<InputStream> fInput;
  std::optional<CsvReader> fReader;
  std::optional<ColumnNames> fNames;              // of the first file
  std::vector<std::uint64_t> fLinesBefore = {0};  // of the files that have been opened
  std::uint64_t fBytesBefore = 0;                 // of the file that it has come to
};

}  // namespace MCBin
