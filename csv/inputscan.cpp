#include "csv/inputscan.h"

#include <fmt/format.h>

#include <algorithm>
#include <optional>
#include <string_view>

#include "binmodel/model/refusal.h"
#include "binmodel/text/displaytext.h"
#include "binmodel/text/number.h"

namespace MCBin {

namespace {

// Takes the fields of the reader's current record in, and their values into the file.
class RecordScan {
 public:
  RecordScan(const CsvReader& reader, const std::vector<ColumnRequest>& requests,
             const MissingTexts& missingTexts, InputScan& scan)
      : fReader(reader), fRequests(requests), fMissingTexts(missingTexts), fScan(scan) {}

  // `counts` is false in a record that is dropped for its weight.
  void Add(bool counts) {
    for (std::size_t i = 0; i < fRequests.size(); ++i) {
      const CsvField& field = fReader.GetFields()[fRequests[i].position];
      if (fRequests[i].use == ColumnUse::kWeight) {
        if (counts) fScan.values->Set(i, ParseNumber(field).value);
        continue;
      }
      Store(i, fMissingTexts.IsMissing(field) ? fScan.columns[i].GetMissing()
                                              : Scan(i, field, counts));
    }
    if (counts) fScan.values->FinishRecord();
  }

 private:
  ColumnScan::Value Scan(std::size_t i, const CsvField& field, bool counts) {
    ColumnScan& column = fScan.columns[i];
    const ColumnScan::Value value = column.Add(field, fReader.GetLine(), counts);
    if (!column.IsNumeric()) HandleText(i, field.text);
    return value;
  }

  void HandleText(std::size_t i, std::string_view text) {
    const ColumnRequest& request = fRequests[i];
    if (request.kind == KindRequest::kContinuous) {
      throw MCBinModel::Refusal(
          MCBinModel::RefusalCode::kTextInContinuousColumn,
          {fReader.Where(), request.name, std::string(text)},
          fmt::format("{} in column {} is not a number, but the column is to be continuous",
                      MCBinModel::QuotedText(text), MCBinModel::QuotedText(request.name)));
    }
    fScan.values->Abandon(i);
  }

  void Store(std::size_t i, const ColumnScan::Value& value) {
    fScan.values->Set(i, value.ifNumeric);
    if (fScan.textColumns[i] != i) fScan.values->Set(fScan.textColumns[i], value.ifTexts);
  }

  const CsvReader& fReader;
  const std::vector<ColumnRequest>& fRequests;
  const MissingTexts& fMissingTexts;
  InputScan& fScan;
};

// Lays out the value file: one column for each request, and one more where texts count, too.
void MakeValueFile(const std::vector<ColumnRequest>& requests, const std::string& directory,
                   InputScan& scan) {
  std::size_t columnCount = requests.size();
  for (std::size_t i = 0; i < requests.size(); ++i) {
    scan.textColumns.push_back(requests[i].MayBeCategorical() ? columnCount++ : i);
  }
  scan.values = std::make_unique<ValueFile>(directory, columnCount);
}

}  // namespace

InputScan ScanInput(CsvReader& reader, const std::vector<ColumnRequest>& requests,
                    IBINVariable::BINWRoundingOption rounding, const MissingTexts& missingTexts,
                    const std::string& directory, const ReadProgress& progress) {
  InputScan scan;
  scan.columns = std::vector<ColumnScan>(requests.begin(), requests.end());
  MakeValueFile(requests, directory, scan);
  const auto weight = std::find_if(requests.begin(), requests.end(), [](const ColumnRequest& r) {
    return r.use == ColumnUse::kWeight;
  });
  MCBinModel::WeightInfo weightInfo;
  std::optional<WeightCheck> weights;
  if (weight != requests.end()) {
    weightInfo = {weight->name, rounding, weight->missing.ForEitherKind()};
    weights.emplace(weightInfo, weight->position, missingTexts);
  }

  RecordScan record(reader, requests, missingTexts, scan);
  RecordPass pass(reader, progress);
  while (pass.Next()) record.Add(!weights || weights->Check(reader));
  scan.recordCount = pass.GetRecordCount();
  if (scan.recordCount == 0) {
    throw MCBinModel::Refusal(MCBinModel::RefusalCode::kNoRecords, {reader.GetName(), {}, {}},
                              "there is a header but no record");
  }
  if (weights) {
    scan.weightNote = weights->DescribeRounding();
    scan.dropped = weights->GetCoder().GetDropped();
    weights->GetCoder().CheckRecordsLeft(scan.recordCount, reader.GetName());
  }
  scan.values->Finish();
  return scan;
}

}  // namespace MCBin
