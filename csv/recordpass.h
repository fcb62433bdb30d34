#pragma once

#include <cstdint>

#include "cli/terminal/progressbar.h"
#include "csv/csvreader.h"
#include "io/interrupt.h"

namespace MCBin {

// A pass over the records of a CSV file that shows how far it is and ends on a signal.
class RecordPass {
 public:
  // Borrows both.
  RecordPass(CsvReader& reader, ProgressBar& progress) : fReader(reader), fProgress(progress) {}

  // Goes on to the next record; false after the last one. Throws Interrupt::Requested and what
  // the reader throws.
  bool Next() {
    constexpr std::uint64_t kRecordsPerLook = 4096;
    if (fRecordCount % kRecordsPerLook == 0) {
      Interrupt::ThrowIfRequested();
      fProgress.Update(fReader.GetBytesRead());
    }
    if (!fReader.Next()) return false;
    ++fRecordCount;
    return true;
  }

  // How many records the pass has come to.
  std::uint64_t GetRecordCount() const { return fRecordCount; }

 private:
  CsvReader& fReader;
  ProgressBar& fProgress;
  std::uint64_t fRecordCount = 0;
};

}  // namespace MCBin
