#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

#include "csv/columnrequest.h"
#include "csv/csvsyntax.h"
#include "csv/missingtexts.h"
#include "csv/numberformat.h"
#include "csv/weightcheck.h"

namespace MCBin {

// What a pass over a file does with its columns; all that it points to is borrowed.
struct ScanPlan {
  const CsvSyntax& syntax;
  const NumberFormat& numbers;
  bool hasPlainDecimals;  // see RecordParser
  const MissingTexts& missingTexts;
  const std::vector<ColumnRequest>& requests;
  const WeightCheck* weights;  // null without a weight

  // In the value file: column i has the numbers of request i, textColumns[i] its codes as texts.
  const std::vector<std::size_t>& textColumns;
  std::size_t valueColumnCount;

  // Of the files before this one, which column scans count, too.
  std::uint64_t linesBefore;

  // By position in the file: an index into the requests, or kNotRead.
  static constexpr std::size_t kNotRead = static_cast<std::size_t>(-1);
  std::vector<std::size_t> requestAt;
};

}  // namespace MCBin
