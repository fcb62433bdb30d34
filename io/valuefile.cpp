#include "io/valuefile.h"

#include <fcntl.h>
#include <fmt/format.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstring>

#include "binmodel/model/refusal.h"
#include "binmodel/text/displaytext.h"

namespace MCBin {

namespace {

// About 1 MiB for all columns; up to 16 MiB where there are so many of them that they would be read
// in very small pieces. An odd number of cache lines, as the values of one record lie that far
// apart: with a power of two they would push each other out of the cache.
std::size_t ChooseRecordsPerBlock(std::size_t columnCount) {
  constexpr std::size_t kBlockValues = std::size_t{1} << 17;
  constexpr std::size_t kValuesPerLine = 8;
  const std::size_t columns = std::max<std::size_t>(columnCount, 1);
  const std::size_t smallest = std::clamp<std::size_t>(16 * kBlockValues / columns, 16, 512);
  const std::size_t records = std::clamp<std::size_t>(kBlockValues / columns, smallest, 8192);
  return records / kValuesPerLine / 2 * 2 * kValuesPerLine + kValuesPerLine;
}

[[noreturn]] void RefuseToWrite(const char* what, const std::string& directory) {
  const char* const why = std::strerror(errno);
  throw MCBinModel::Refusal(MCBinModel::RefusalCode::kTemporaryFiles, {{}, directory, why},
                            fmt::format("cannot {} a temporary file in {}: {}", what,
                                        MCBinModel::QuotedText(directory), why));
}

}  // namespace

ValueFile::ValueFile(const std::string& directory, std::size_t columnCount)
    : fDirectory(directory),
      fColumnCount(columnCount),
      fRecordsPerBlock(ChooseRecordsPerBlock(columnCount)),
      fBlock(columnCount * fRecordsPerBlock),
      fIsAbandoned(columnCount, false) {
  const std::string path = directory + "/values";
  fFile.Reset(open(path.c_str(), O_RDWR | O_CREAT | O_EXCL | O_CLOEXEC, 0600));
  if (!fFile.IsOpen() || unlink(path.c_str()) != 0) {
    RefuseToWrite("make", fDirectory);
  }
}

void ValueFile::AddRecords(const double* values, std::size_t stride, std::size_t count) {
  while (count > 0) {
    const std::size_t fitting = std::min(count, fRecordsPerBlock - fRecordsInBlock);
    for (std::size_t column = 0; column < fColumnCount; ++column) {
      if (fIsAbandoned[column]) continue;
      std::copy_n(values + column * stride, fitting,
                  fBlock.data() + column * fRecordsPerBlock + fRecordsInBlock);
    }
    fRecordCount += fitting;
    fRecordsInBlock += fitting;
    if (fRecordsInBlock == fRecordsPerBlock) WriteBlock(fRecordsPerBlock);
    values += fitting;
    count -= fitting;
  }
}

// The last block is as long as it has records: few records of many columns take little room.
void ValueFile::Finish() {
  for (std::size_t column = 0; column < fColumnCount; ++column) {
    const double* const values = fBlock.data() + column * fRecordsPerBlock;
    std::copy(values, values + fRecordsInBlock, fBlock.data() + column * fRecordsInBlock);
  }
  if (fRecordsInBlock > 0) WriteBlock(fRecordsInBlock);
  std::vector<double>().swap(fBlock);
}

// Neighbouring columns go out together, and leave holes for the abandoned ones.
void ValueFile::WriteBlock(std::size_t recordCount) {
  std::size_t column = 0;
  while (column < fColumnCount) {
    const auto first = std::find(fIsAbandoned.begin() + static_cast<std::ptrdiff_t>(column),
                                 fIsAbandoned.end(), false);
    const auto end = std::find(first, fIsAbandoned.end(), true);
    column = static_cast<std::size_t>(end - fIsAbandoned.begin());
    Write(static_cast<std::size_t>(first - fIsAbandoned.begin()), column, recordCount);
  }
  ++fBlocksWritten;
  fRecordsInBlock = 0;
}

void ValueFile::Write(std::size_t firstColumn, std::size_t endColumn, std::size_t recordCount) {
  const char* bytes = reinterpret_cast<const char*>(fBlock.data() + firstColumn * recordCount);
  std::size_t left = (endColumn - firstColumn) * recordCount * sizeof(double);
  std::uint64_t position = PositionOf(fBlocksWritten, firstColumn, recordCount);
  while (left > 0) {
    const ssize_t written = pwrite(fFile.Get(), bytes, left, static_cast<off_t>(position));
    if (written < 0 && errno == EINTR) continue;
    if (written <= 0) {
      RefuseToWrite("write", fDirectory);
    }
    bytes += written;
    left -= static_cast<std::size_t>(written);
    position += static_cast<std::uint64_t>(written);
  }
}

std::uint64_t ValueFile::PositionOf(std::size_t block, std::size_t column,
                                    std::size_t recordCount) const {
  return (std::uint64_t{block} * fColumnCount * fRecordsPerBlock + column * recordCount) *
         sizeof(double);
}

void ValueFile::Read(std::size_t block, std::size_t column, double* values) const {
  char* bytes = reinterpret_cast<char*>(values);
  const std::uint64_t recordsBefore = std::uint64_t{block} * fRecordsPerBlock;
  const std::size_t recordCount =
      std::min<std::uint64_t>(fRecordsPerBlock, fRecordCount - recordsBefore);
  std::size_t left = recordCount * sizeof(double);
  std::uint64_t position = PositionOf(block, column, recordCount);
  while (left > 0) {
    const ssize_t got = pread(fFile.Get(), bytes, left, static_cast<off_t>(position));
    if (got < 0 && errno == EINTR) continue;
    if (got <= 0) {
      const char* const why = got == 0 ? "it ends early" : std::strerror(errno);
      throw MCBinModel::Refusal(MCBinModel::RefusalCode::kUnreadable, {{}, {}, why},
                                fmt::format("cannot read back a temporary file in {}: {}",
                                            MCBinModel::QuotedText(fDirectory), why));
    }
    bytes += got;
    left -= static_cast<std::size_t>(got);
    position += static_cast<std::uint64_t>(got);
  }
}

}  // namespace MCBin
