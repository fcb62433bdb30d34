#include "csv/recordcount.h"

#include <fmt/format.h>

#include <string>
#include <utility>

#include "binmodel/model/refusal.h"
#include "binmodel/text/displaytext.h"
#include "csv/fieldcoder.h"
#include "csv/weightcheck.h"

namespace MCBin {

using MCBinModel::Refusal;
using MCBinModel::RefusalCode;

namespace {

void CheckCounts(const MCBinModel::BinModel& model, const MCBinModel::Recount& recount,
                 const std::string& place) {
  for (const MCBinModel::RecountedBins& recounted : recount.results) {
    const MCBinModel::AttributeBins& counts = recounted.counts;
    if (!counts.target || counts.validWeight > 0.0 || counts.missing->weight > 0.0) return;
  }
  const std::string target = model.GetTarget(recount.results.front().counts)->name;
  throw Refusal(
      RefusalCode::kNoRecords, {place, target, {}},
      fmt::format("no record has a class of the target {} that the bins know; without this "
                  "column shares and stability are compared",
                  MCBinModel::QuotedText(target)));
}

}  // namespace

MCBinModel::Recount CountRecords(const MCBinModel::BinModel& model,
                                 const std::vector<std::size_t>& results, const ColumnNames& names,
                                 const std::optional<MCBinModel::WeightInfo>& weight,
                                 const MissingTexts& missingTexts, CsvReader& reader,
                                 const ReadProgress& progress, std::vector<std::string>& notes) {
  std::optional<WeightCheck> weights;
  if (weight) weights.emplace(*weight, names.Find(weight->name), missingTexts);
  MCBinModel::BinCounter counter(model, results);
  std::vector<FieldCoder> coders;
  for (const MCBinModel::BinCounter::Variable& variable : counter.GetVariables()) {
    const MCBinModel::VariableInfo& info = variable.GetInfo(model);
    coders.emplace_back(info, names.Find(info.name), missingTexts);
  }

  std::vector<double> values(coders.size());
  RecordPass pass(reader, progress);
  while (pass.Next()) {
    const std::optional<double> recordWeight = weights ? weights->Check(reader.GetRecord()) : 1.0;
    if (!recordWeight) continue;
    for (std::size_t i = 0; i < coders.size(); ++i) values[i] = coders[i].Code(reader);
    counter.Add(values.data(), *recordWeight);
  }

  const std::uint64_t recordCount = pass.GetRecordCount();
  if (recordCount == 0) {
    throw Refusal(RefusalCode::kNoRecords, {reader.GetName(), {}, {}}, "there is no record");
  }
  if (weights) weights->GetCoder().CheckRecordsLeft(recordCount, reader.GetName());
  if (weights) {
    std::optional<std::string> rounding = weights->DescribeRounding();
    if (rounding) notes.push_back(*std::move(rounding));
  }
  for (const FieldCoder& coder : coders) {
    std::optional<std::string> unknown = coder.DescribeUnknown();
    if (unknown) notes.push_back(*std::move(unknown));
  }
  MCBinModel::Recount recount{
      recordCount, weights ? weights->GetCoder().GetDropped() : MCBinModel::DroppedRecords{},
      counter.Finish()};
  CheckCounts(model, recount, reader.GetName());
  return recount;
}

}  // namespace MCBin
