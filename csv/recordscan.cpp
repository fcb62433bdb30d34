#include "csv/recordscan.h"

#include <fmt/format.h>

#include <cstddef>
#include <string>

#include "binmodel/model/refusal.h"
#include "binmodel/text/displaytext.h"

namespace MCBin {

void RecordScan::Add(const CsvRecord& record) {
  const bool counts = fWeights == nullptr || fWeights->Check(record);
  for (std::size_t i = 0; i < fRequests.size(); ++i) {
    const CsvField& field = record.fields[fRequests[i].position];
    if (fRequests[i].use == ColumnUse::kWeight) {
      if (counts) fScan.values->Set(i, ParseNumber(field).value);
      continue;
    }
    Store(i, fMissingTexts.IsMissing(field) ? fScan.columns[i].GetMissing()
                                            : Scan(i, record, field, counts));
  }
  if (counts) fScan.values->FinishRecord();
  ++fScan.recordCount;
}

ColumnScan::Value RecordScan::Scan(std::size_t i, const CsvRecord& record, const CsvField& field,
                                   bool counts) {
  ColumnScan& column = fScan.columns[i];
  const ColumnScan::Value value = column.Add(field, fLinesBefore + record.line, counts);
  if (!column.IsNumeric()) HandleText(i, record, field.text);
  return value;
}

void RecordScan::HandleText(std::size_t i, const CsvRecord& record, std::string_view text) {
  const ColumnRequest& request = fRequests[i];
  if (request.kind == KindRequest::kContinuous) {
    throw MCBinModel::Refusal(
        MCBinModel::RefusalCode::kTextInContinuousColumn,
        {record.Where(), request.name, std::string(text)},
        fmt::format("{} in column {} is not a number, but the column is to be continuous",
                    MCBinModel::QuotedText(text), MCBinModel::QuotedText(request.name)));
  }
  fScan.values->Abandon(i);
}

void RecordScan::Store(std::size_t i, const ColumnScan::Value& value) {
  fScan.values->Set(i, value.ifNumeric);
  if (fScan.textColumns[i] != i) fScan.values->Set(fScan.textColumns[i], value.ifTexts);
}

}  // namespace MCBin
