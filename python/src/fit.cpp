#include "fit.h"

#include <mcbinmodel/apply/weightcoder.h>
#include <mcbinmodel/model/targetclasses.h>
#include <mcbinmodel/run/binrun.h>
#include <mcbinmodel/run/memorycolumns.h>

#include <string_view>

#include "cells.h"
#include "hostcalls.h"

namespace MCBinPython {

namespace {

using MCBinModel::ColumnView;
using MCBinModel::MemoryColumns;
using MCBinModel::VariableInfo;

// Adds numbers that lie in one piece and are of a type that the library reads itself.
template <typename Number>
std::size_t AddChunk(MemoryColumns& columns, const Chunk& chunk) {
  return columns.Add(ColumnView<Number>{reinterpret_cast<const Number*>(chunk.At(0)), chunk.stride,
                                        chunk.validity, chunk.first});
}

std::size_t AddNumbers(MemoryColumns& columns, const Column& column) {
  if (column.chunks.size() == 1 && !column.isDictionary && !column.lowestIsMissing &&
      !column.IsTime()) {
    const Chunk& chunk = column.chunks.front();
    switch (column.storage) {
      case Storage::kFloat64:
        return AddChunk<double>(columns, chunk);
      case Storage::kFloat32:
        return AddChunk<float>(columns, chunk);
      case Storage::kInt32:
        return AddChunk<std::int32_t>(columns, chunk);
      case Storage::kInt64:
        return AddChunk<std::int64_t>(columns, chunk);
      default:
        break;
    }
  }
  return columns.AddColumn([&column](std::size_t first, std::size_t count, double* values) {
    column.ReadNumbers(first, count, values);
  });
}

// Categories whose order means something keep it, also those that do not occur.
void TakeOrder(const Column& column, VariableInfo& variable) {
  if (!column.isOrdered || column.chunks.empty()) return;
  const Cells& dictionary = *column.chunks.front().dictionary;
  variable.numbers = dictionary.numbers;
  variable.texts.assign(dictionary.texts.begin(), dictionary.texts.end());
}

// The records that their weight drops: what is seen in them alone is no category.
std::vector<std::size_t> FindDropped(const Column& column, const MCBinModel::WeightInfo& info) {
  MCBinModel::WeightCoder coder(info);
  std::vector<double> weights(column.length);
  column.ReadNumbers(0, column.length, weights.data());
  std::vector<std::size_t> dropped;
  for (std::size_t i = 0; i < weights.size(); ++i) {
    if (!coder.Code(weights[i])) dropped.push_back(i);
  }
  coder.CheckRecordsLeft(column.length);
  return dropped;
}

std::size_t AddCategories(MemoryColumns& columns, const Column& column,
                          const std::vector<std::size_t>& dropped, VariableInfo& variable) {
  TakeOrder(column, variable);
  Cells cells = ReadCells(column);
  for (const std::size_t record : dropped) SetInvalid(cells, record);
  const std::uint8_t* const validity = cells.validity.data();
  if (column.isText) {
    return columns.AddCategories(
        ColumnView<std::string_view>{cells.texts.data(), sizeof(std::string_view), validity},
        variable);
  }
  return columns.AddCategories(ColumnView<double>{cells.numbers.data(), sizeof(double), validity},
                               variable);
}

class Run {
 public:
  Run(const Table& table, const FitColumns& columns)
      : fTable(table), fColumns(columns), fMemory(table.GetLength()) {}

  const MemoryColumns& GetColumns() const { return fMemory; }

  MCBinModel::RunVariables MakeVariables(bool truncatesWeights) {
    MCBinModel::RunVariables variables;
    if (fColumns.weight) {
      const Column& column = fTable.GetColumns()[*fColumns.weight];
      variables.weight.emplace();
      variables.weight->info.name = column.name;
      variables.weight->info.missing = MissingOf(*fColumns.weight);
      if (truncatesWeights) variables.weight->info.rounding = IBINVariable::RoundTruncate;
      fDropped = FindDropped(column, variables.weight->info);
      variables.weight->column = AddNumbers(fMemory, column);
    }
    for (const std::size_t index : fColumns.attributes) {
      const Column& column = fTable.GetColumns()[index];
      const bool isCategorical =
          column.isText || column.isDictionary || fColumns.categorical.count(index) > 0;
      Add(index, isCategorical, variables.attributes, variables.attributeColumns);
    }
    for (const std::size_t index : fColumns.targets) {
      Add(index, true, variables.targets, variables.targetColumns);
    }
    return variables;
  }

 private:
  MCBinModel::MissingDefinition MissingOf(std::size_t index) const {
    const auto found = fColumns.missing.find(index);
    return found == fColumns.missing.end() ? MCBinModel::MissingDefinition{} : found->second;
  }

  void Add(std::size_t index, bool isCategorical, std::vector<VariableInfo>& variables,
           std::vector<std::size_t>& places) {
    const Column& column = fTable.GetColumns()[index];
    VariableInfo variable;
    variable.name = column.name;
    variable.missing = MissingOf(index);
    if (isCategorical) CheckCategories(column);
    variable.isTime = !isCategorical && column.IsTime();
    places.push_back(isCategorical ? AddCategories(fMemory, column, fDropped, variable)
                                   : AddNumbers(fMemory, column));
    variables.push_back(std::move(variable));
  }

  const Table& fTable;
  const FitColumns& fColumns;
  MemoryColumns fMemory;
  std::vector<std::size_t> fDropped;
};

}  // namespace

std::pair<MCBinModel::BinModel, std::vector<std::size_t>> Fit(
    const Table& table, const MCBinModel::BinSettings& settings, const FitColumns& columns,
    const FitControl& control) {
  HostCalls host(control.progress);
  MCBinModel::RunControl runControl;
  runControl.tempDir = control.tempDir;
  runControl.jobs = control.threads;
  runControl.cancel = [&] { return host.QueryCancel(); };
  if (!control.progress.is_none()) {
    runControl.progress = [&](std::uint64_t done, std::uint64_t total) {
      host.ReportProgress(done, total);
    };
  }

  const nanobind::gil_scoped_release unlocked;
  Run run(table, columns);
  MCBinModel::RunVariables variables = run.MakeVariables(control.truncatesWeights);
  ChooseEvents(variables.targets, control.events);
  std::vector<std::size_t> countedAnew;
  MCBinModel::BinModel model = MCBinModel::MakeBins(settings, std::move(variables),
                                                    run.GetColumns(), runControl, &countedAnew);
  OrderClasses(model);
  return {std::move(model), std::move(countedAnew)};
}

}  // namespace MCBinPython
