#include "cli/inputscan.h"

#include <fmt/format.h>

#include <algorithm>
#include <optional>

#include "cli/displaytext.h"
#include "cli/inputerror.h"
#include "cli/interrupt.h"

namespace MCBin {

namespace {

void ScanRecord(const CsvReader& reader, const std::vector<ColumnRequest>& requests,
                const MissingTexts& missingTexts, bool counts, std::vector<ColumnScan>& columns) {
  for (std::size_t i = 0; i < requests.size(); ++i) {
    const ColumnRequest& request = requests[i];
    const CsvField& field = reader.GetFields()[request.position];
    if (request.use == ColumnUse::kWeight || missingTexts.IsMissing(field)) continue;
    columns[i].Add(field.text, reader.GetLine(), counts);
    if (request.kind == KindRequest::kContinuous && !columns[i].IsNumeric()) {
      throw InputError(
          fmt::format("{}: {} in column {} is not a number, but the column is "
                      "--continuous; texts that mean missing go to --na",
                      reader.Where(), QuotedText(field.text), QuotedText(request.name)));
    }
  }
}

void CheckRecordsLeft(const std::string& name, const InputScan& scan) {
  if (scan.recordCount == 0) {
    throw InputError(fmt::format("{}: there is a header but no record", name));
  }
  if (scan.dropped.GetTotal() == scan.recordCount) {
    throw InputError(
        fmt::format("{}: no record has a usable weight: {} missing, {} zero, {} "
                    "rounded to zero",
                    name, scan.dropped.missing, scan.dropped.zero, scan.dropped.roundedToZero));
  }
}

}  // namespace

InputScan ScanInput(CsvReader& reader, const std::vector<ColumnRequest>& requests,
                    IBINVariable::BINWRoundingOption rounding, const MissingTexts& missingTexts,
                    ProgressBar& progress) {
  constexpr std::uint64_t kRecordsPerUpdate = 4096;

  InputScan scan;
  scan.columns = std::vector<ColumnScan>(requests.begin(), requests.end());
  const auto weight = std::find_if(requests.begin(), requests.end(), [](const ColumnRequest& r) {
    return r.use == ColumnUse::kWeight;
  });
  std::optional<WeightCheck> weights;
  if (weight != requests.end()) weights.emplace(*weight, rounding, missingTexts);

  while (reader.Next()) {
    if (scan.recordCount++ % kRecordsPerUpdate == 0) {
      Interrupt::ThrowIfRequested();
      progress.Update(reader.GetBytesRead());
    }
    const bool counts = !weights || weights->Check(reader);
    ScanRecord(reader, requests, missingTexts, counts, scan.columns);
  }
  if (weights) scan.dropped = weights->GetDropped();
  CheckRecordsLeft(reader.GetName(), scan);
  return scan;
}

}  // namespace MCBin
