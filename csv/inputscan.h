#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "csv/columnrequest.h"
#include "csv/columnscan.h"
#include "csv/inputfiles.h"
#include "csv/missingtexts.h"
#include "csv/recordpass.h"
#include "csv/weightcheck.h"
#include "io/valuefile.h"

namespace MCBin {

// What the pass over the file found.
struct InputScan {
  std::uint64_t recordCount = 0;  // the dropped ones included
  MCBinModel::DroppedRecords dropped;
  std::optional<std::string> weightNote;  // that weights were rounded
  std::vector<ColumnScan> columns;        // one per request; unused for the weight

  // The values of the records that were not dropped. Column i of the file is that of request
  // i if it is numeric, column textColumns[i] if it holds texts.
  std::unique_ptr<ValueFile> values;
  std::vector<std::size_t> textColumns;

  // The value file's column of a request.
  std::size_t GetValueColumn(std::size_t request) const {
    return columns[request].IsNumeric() ? request : textColumns[request];
  }
};

// How a file is scanned.
struct ScanControl {
  std::string directory;  // for the temporary file of values
  ReadProgress progress;  // called by the thread that calls ScanInput()

  // Threads that parse blocks of the file, that thread among them; 0 is one for every core. What is
  // found, refused and said is the same for any number. With one there are no others; each takes
  // two blocks of records, and two more are read ahead.
  int jobs = 1;
};

// Reads every record after the header of every file; their values go to a temporary file.
// Throws Refusal for what the reader and the weights refuse, for a text in a column that must
// be numeric, and when no record is left; Interrupt::Requested when the user stops it.
InputScan ScanInput(InputFiles& files, const std::vector<ColumnRequest>& requests,
                    IBINVariable::BINWRoundingOption rounding, const MissingTexts& missingTexts,
                    const ScanControl& control);

}  // namespace MCBin
