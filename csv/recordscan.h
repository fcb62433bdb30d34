#pragma once

#include <cstdint>
#include <string_view>
#include <vector>

#include "csv/columnrequest.h"
#include "csv/csvrecord.h"
#include "csv/inputscan.h"
#include "csv/missingtexts.h"
#include "csv/scanplan.h"
#include "csv/weightcheck.h"

namespace MCBin {

// Takes records into an InputScan one by one, in the order of the file.
class RecordScan {
 public:
  // Borrows all of it; `weights` may be null.
  RecordScan(const ScanPlan& plan, WeightCheck* weights, InputScan& scan)
      : fRequests(plan.requests),
        fMissingTexts(plan.missingTexts),
        fLinesBefore(plan.linesBefore),
        fWeights(weights),
        fScan(scan) {}

  // Throws Refusal for an unusable weight, for a text in a column that must be numeric, and when
  // the disk is full.
  void Add(const CsvRecord& record);

 private:
  ColumnScan::Value Scan(std::size_t i, const CsvRecord& record, const CsvField& field,
                         bool counts);
  void HandleText(std::size_t i, const CsvRecord& record, std::string_view text);
  void Store(std::size_t i, const ColumnScan::Value& value);

  const std::vector<ColumnRequest>& fRequests;
  const MissingTexts& fMissingTexts;
  const std::uint64_t fLinesBefore;
  WeightCheck* const fWeights;
  InputScan& fScan;
};

}  // namespace MCBin
