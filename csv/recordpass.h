#pragma once

#include <cstdint>
#include <functional>
#include <utility>

#include "csv/csvreader.h"
#include "io/interrupt.h"

namespace MCBin {

// Told how many bytes of a file were read.
using ReadProgress = std::function<void(std::uint64_t bytesRead)>;

// A pass over the records of a CSV file that tells how far it is and ends on a signal.
class RecordPass {
 public:
  // Borrows the reader.
  RecordPass(CsvReader& reader, ReadProgress progress)
      : fReader(reader), fProgress(std::move(progress)) {}

  // Goes on to the next record; false after the last one. Throws Interrupt::Requested and what
  // the reader throws.
  bool Next() {
    constexpr std::uint64_t kRecordsPerLook = 4096;
    if (fRecordCount % kRecordsPerLook == 0) {
      Interrupt::ThrowIfRequested();
      fProgress(fReader.GetBytesRead());
    }
    if (!fReader.Next()) return false;
    ++fRecordCount;
    return true;
  }

  // How many records the pass has come to.
  std::uint64_t GetRecordCount() const { return fRecordCount; }

 private:
  CsvReader& fReader;
  const ReadProgress fProgress;
  std::uint64_t fRecordCount = 0;
};

}  // namespace MCBin
