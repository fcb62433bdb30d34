#pragma once

#include <cstddef>
#include <string>
#include <vector>

#include "binmodel/export/binexport.h"

namespace MCBinModel {

// One attribute's way from values to bins, whatever the language it is written in. Values count
// as they do when bins are applied.
struct ExportColumn {
  // A bin of categories instead of an interval, without those that count as missing.
  struct CategoryBin {
    std::size_t bin;
    std::vector<std::size_t> codes;
  };

  const VariableInfo* attribute;
  const std::vector<double>* cutPoints;
  std::string name;                       // of the new column
  std::vector<BinValue> values;           // by bin
  std::vector<CategoryBin> categoryBins;  // those with a category; of categorical attributes only
  std::vector<double> missingNumbers;     // of numeric attributes; may hold an infinity
  BinValue missing;                       // of a missing value
};

struct ExportModel {
  bool rightClosed;
  BinForm form;
  std::vector<ExportColumn> columns;
};

// A time in seconds since 1970 as in 2024-01-31 12:30:00.000001: of times between two microseconds
// the earlier or, with `up`, the later. Throws Refusal for a time beyond the years 1 to 9999.
std::string FormatExportTime(const VariableInfo& attribute, double seconds, bool up);

// What the options say that missing values become, which a bin without a value gets, too; nothing
// where they do not say it. Throws Refusal when `missingText` is not of the type of the new
// columns.
BinValue MissingValueOf(const ExportOptions& options);

// The bins of some results, ready to be written. Borrows `model`. Throws Refusal as the functions
// of binexport.h do, but for what a language cannot write.
ExportModel MakeExportModel(const BinModel& model, const std::vector<std::size_t>& results,
                            const ExportOptions& options);

}  // namespace MCBinModel
