#pragma once

#include <cstddef>
#include <string>
#include <vector>

#include "binmodel/apply/binvalues.h"
#include "binmodel/export/exportoptions.h"
#include "binmodel/model/binmodel.h"

namespace MCBinModel {

// One attribute's way from values to bins, whatever the language it is written in. Values count
// as they do in `mcbin apply`.
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
};

struct ExportModel {
  bool rightClosed;
  BinForm form;
  BinValue missing;
  std::vector<ExportColumn> columns;
};

// The bins of one target, ready to be written. Borrows `model`.
//
// Throws Refusal when a new column would have the name of another, and when weight of
// evidence is asked for without a target of two classes; UsageError when --missing-as is not
// of the type that the new columns have.
ExportModel MakeExportModel(const BinModel& model, const ExportOptions& options);

}  // namespace MCBinModel
