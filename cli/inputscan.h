#pragma once

#include <cstdint>
#include <vector>

#include "cli/columnrequest.h"
#include "cli/columnscan.h"
#include "cli/csvreader.h"
#include "cli/missingtexts.h"
#include "cli/progressbar.h"
#include "cli/weightcheck.h"

namespace MCBin {

// What the first pass over the file found.
struct InputScan {
  std::uint64_t recordCount = 0;  // the dropped ones included
  DroppedRecords dropped;
  std::vector<ColumnScan> columns;  // one per request; of the weight, its kind alone
};

// Reads every record after the header. Throws InputError for what the reader and the
// weights refuse, for a text in a column that must be numeric, and when no record is left;
// Interrupt::Requested when the user stops it.
InputScan ScanInput(CsvReader& reader, const std::vector<ColumnRequest>& requests,
                    IBINVariable::BINWRoundingOption rounding, const MissingTexts& missingTexts,
                    ProgressBar& progress);

}  // namespace MCBin
