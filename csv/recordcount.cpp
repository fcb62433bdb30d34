#include "csv/recordcount.h"

#include <utility>

#include "csv/fieldcoder.h"
#include "csv/weightcheck.h"

namespace MCBin {

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
    const std::optional<double> recordWeight = weights ? weights->Check(reader) : 1.0;
    if (!recordWeight) continue;
    for (std::size_t i = 0; i < coders.size(); ++i) values[i] = coders[i].Code(reader);
    counter.Add(values.data(), *recordWeight);
  }

  for (const FieldCoder& coder : coders) {
    std::optional<std::string> unknown = coder.DescribeUnknown();
    if (unknown) notes.push_back(*std::move(unknown));
  }
  return {pass.GetRecordCount(),
          weights ? weights->GetCoder().GetDropped() : MCBinModel::DroppedRecords{},
          counter.Finish()};
}

}  // namespace MCBin
