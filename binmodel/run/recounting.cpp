#include "binmodel/run/recounting.h"

#include <algorithm>
#include <limits>

#include "binmodel/apply/columnview.h"

namespace MCBinModel {

namespace {

constexpr double kNothing = std::numeric_limits<double>::quiet_NaN();

}  // namespace

Recounting::Recounting(const BinModel& model, const std::vector<std::size_t>& results,
                       const RunVariables& variables, const ColumnSource& source)
    : fModel(model),
      fCounter(model, results),
      fBlocks(source, ColumnsOf(variables)),
      fCodes(fCounter.GetVariables().size() * fBlocks.GetStride()),
      fWeights(variables.weight ? fBlocks.GetStride() : 0) {
  if (variables.weight) fWeightCoder.emplace(variables.weight->info);
  for (const BinCounter::Variable& variable : fCounter.GetVariables()) {
    fCoders.emplace_back(variable.GetInfo(model));
  }
}

std::vector<RecountedBins> Recounting::Count(
    const std::function<bool(std::size_t recordCount)>& goOn) {
  while (const std::size_t count = fBlocks.ReadNext()) {
    if (!goOn(count)) break;
    AddBlock(count);
  }
  return fCounter.Finish();
}

// Those of the counter's variables, then the weight.
std::vector<SourceColumn> Recounting::ColumnsOf(const RunVariables& variables) const {
  std::vector<SourceColumn> columns;
  for (const BinCounter::Variable& variable : fCounter.GetVariables()) {
    const auto& places = variable.isTarget ? variables.targetColumns : variables.attributeColumns;
    columns.push_back({places[variable.index], &variable.GetInfo(fModel)});
  }
  if (variables.weight) columns.push_back({variables.weight->column, nullptr});
  return columns;
}

void Recounting::AddBlock(std::size_t count) {
  std::vector<const double*> columns;
  for (std::size_t i = 0; i < fCoders.size(); ++i) {
    const double* const values = fBlocks.GetValues(i);
    double* const codes = fCodes.data() + i * fBlocks.GetStride();
    if (fCounter.GetVariables()[i].GetInfo(fModel).IsCategorical()) {
      std::copy_n(values, count, codes);
      std::replace_if(
          codes, codes + count, [](double code) { return !(code >= 0.0); }, kNothing);
    } else {
      fCoders[i].Code(ColumnView<double>{values}, count, codes);
    }
    columns.push_back(codes);
  }
  for (std::size_t i = 0; fWeightCoder && i < count; ++i) {
    fWeights[i] = fWeightCoder->Code(fBlocks.GetValues(fCoders.size())[i]).value_or(kNothing);
  }
  fCounter.Add(columns.data(), fWeightCoder ? fWeights.data() : nullptr, count);
}

}  // namespace MCBinModel
