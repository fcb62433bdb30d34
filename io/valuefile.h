#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

#include "binmodel/run/columnsource.h"
#include "io/filedescriptor.h"

namespace MCBin {

// The values of a run's columns in a temporary file, so that no field of the input is parsed
// twice. First written record by record or some at a time, then read block by block.
//
//   Blocks    of the same number of records each, but for the last; a block holds its
//             values column by column, so a reader fetches the columns it needs alone.
//   Memory    one block, about 1 MiB, up to 16 MiB for tens of thousands of columns.
//   Disk      8 bytes a value. The file has no name: it goes with this object, or with the
//             process, however that ends.
//   Threads   any number may read at the same time, once Finish() has returned.
class ValueFile final : public MCBinModel::ColumnSource {
 public:
  // Makes the file. Throws Refusal.
  ValueFile(const std::string& directory, std::size_t columnCount);

  // Sets a value of the record that is written. A column that is not set keeps an arbitrary
  // value.
  void Set(std::size_t column, double value) {
    fBlock[column * fRecordsPerBlock + fRecordsInBlock] = value;
  }

  // Ends the record. Throws Refusal when the disk is full.
  void FinishRecord() {
    ++fRecordCount;
    if (++fRecordsInBlock == fRecordsPerBlock) WriteBlock(fRecordsPerBlock);
  }

  // Ends `count` records at once, between two records; the values of a column lie side by side, and
  // `stride` values apart from those of the next column. Throws Refusal when the disk is full.
  void AddRecords(const double* values, std::size_t stride, std::size_t count);

  // Nobody will read the column: it takes no room from now on.
  void Abandon(std::size_t column) { fIsAbandoned[column] = true; }

  // Ends the writing. Throws Refusal.
  void Finish();

  std::size_t GetColumnCount() const { return fColumnCount; }
  std::uint64_t GetRecordCount() const override { return fRecordCount; }
  std::size_t GetRecordsPerBlock() const override { return fRecordsPerBlock; }

  // Reads the values of one column in a block; `values` has room for those of a whole one, or of
  // all records when there are fewer. Throws Refusal when the file cannot be read.
  void Read(std::size_t block, std::size_t column, double* values) const override;

 private:
  // `recordCount` is that of the block.
  void WriteBlock(std::size_t recordCount);
  void Write(std::size_t firstColumn, std::size_t endColumn, std::size_t recordCount);
  std::uint64_t PositionOf(std::size_t block, std::size_t column, std::size_t recordCount) const;

  const std::string fDirectory;
  const std::size_t fColumnCount;
  const std::size_t fRecordsPerBlock;
  FileDescriptor fFile;
  std::vector<double> fBlock;  // column by column
  std::vector<bool> fIsAbandoned;
  std::size_t fBlocksWritten = 0;
  std::size_t fRecordsInBlock = 0;
  std::uint64_t fRecordCount = 0;
};

}  // namespace MCBin
