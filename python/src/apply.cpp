#include "apply.h"

#include <mcbinmodel/apply/bincounter.h>
#include <mcbinmodel/apply/binvalues.h>
#include <mcbinmodel/apply/valuecoder.h>
#include <mcbinmodel/apply/weightcoder.h>
#include <mcbinmodel/model/binlookup.h>
#include <mcbinmodel/model/refusal.h>
#include <mcbinmodel/report/binreport.h>

#include <algorithm>
#include <cmath>
#include <limits>
#include <string_view>
#include <variant>

#include "cells.h"

namespace MCBinPython {

namespace {

using MCBinModel::AttributeBins;
using MCBinModel::BinModel;
using MCBinModel::ColumnView;
using MCBinModel::ValueCoder;
using MCBinModel::VariableInfo;

constexpr double kNaN = std::numeric_limits<double>::quiet_NaN();
constexpr std::size_t kRecordsPerBlock = 4096;

// Moments are seconds only where bins are of them.
void CheckUnit(const Column& column, const VariableInfo& variable, const double* codes,
               std::size_t count) {
  if (column.isText || column.IsTime() == variable.isTime) return;
  if (std::all_of(codes, codes + count, [](double code) { return std::isnan(code); })) return;
  const char* const what =
      variable.isTime ? "numbers, the bins are of dates" : "dates, the bins are not of dates";
  throw MCBinModel::Refusal(MCBinModel::RefusalCode::kInput,
                            {.place = {}, .subject = variable.name, .detail = {}},
                            "column '" + variable.name + "' holds " + what);
}

// The numbers of a column where they lie, or else read into a block.
ColumnView<double> ViewNumbers(const Column& column, std::size_t first, std::size_t count,
                               double* block) {
  if (column.storage == Storage::kFloat64 && column.chunks.size() == 1 &&
      column.chunks.front().validity == nullptr) {
    const Chunk& chunk = column.chunks.front();
    return {reinterpret_cast<const double*>(chunk.At(first)), chunk.stride};
  }
  column.ReadNumbers(first, count, block);
  return {block};
}

// Hands the values of a column to `take` in blocks, coded as the bins see them. Answers how many
// were unknown categories.
template <typename Take>
std::size_t CodeBlocks(const Column& column, const VariableInfo& variable, const Take& take) {
  const ValueCoder coder(variable);
  std::vector<double> block(std::min(kRecordsPerBlock, column.length));
  Cells cells;
  if (column.isText) cells = ReadCells(column);
  std::size_t unknownCount = 0;
  for (std::size_t first = 0; first < column.length; first += kRecordsPerBlock) {
    const std::size_t count = std::min(kRecordsPerBlock, column.length - first);
    if (column.isText) {
      const ColumnView<std::string_view> view{cells.texts.data() + first, sizeof(std::string_view),
                                              cells.validity.data(), first};
      unknownCount += coder.Code(view, count, block.data());
    } else {
      const ColumnView<double> view = ViewNumbers(column, first, count, block.data());
      const std::size_t unknown = coder.Code(view, count, block.data());
      if (column.IsTime() && unknown > 0) CheckCategories(column);
      CheckUnit(column, variable, block.data(), count);
      unknownCount += unknown;
    }
    take(first, count, block.data());
  }
  return unknownCount;
}

std::vector<double> TakeValues(const std::vector<std::int32_t>& bins,
                               const std::vector<double>& values, double missing = kNaN) {
  std::vector<double> taken(bins.size());
  std::transform(bins.begin(), bins.end(), taken.begin(), [&](std::int32_t bin) {
    return bin < 0 ? missing : values[static_cast<std::size_t>(bin)];
  });
  return taken;
}

FrameColumn WriteLabels(const BinModel& model, const AttributeBins& bins, std::string name,
                        std::vector<std::int32_t> indexes) {
  std::vector<std::string> labels;
  for (const auto& value : MakeBinValues(model, bins, MCBinModel::BinForm::kLabel)) {
    labels.push_back(std::get<std::string>(value));
  }
  const auto missing = MakeMissingValue(model, bins, MCBinModel::BinForm::kLabel);
  if (const auto* const label = std::get_if<std::string>(&missing)) {
    std::replace(indexes.begin(), indexes.end(), -1, static_cast<std::int32_t>(labels.size()));
    labels.push_back(*label);
  }
  return MakeLabels(std::move(name), std::move(indexes), std::move(labels));
}

FrameColumn WriteEvidence(const BinModel& model, const AttributeBins& bins, std::string name,
                          const std::vector<std::int32_t>& indexes) {
  constexpr auto kForm = MCBinModel::BinForm::kWeightOfEvidence;
  const auto numberOf = [](const MCBinModel::BinValue& value) {
    const double* const number = std::get_if<double>(&value);
    return number == nullptr ? kNaN : *number;
  };
  std::vector<double> evidence;
  for (const auto& value : MakeBinValues(model, bins, kForm)) evidence.push_back(numberOf(value));
  const double missing = numberOf(MakeMissingValue(model, bins, kForm));
  return MakeNumbers(std::move(name), TakeValues(indexes, evidence, missing));
}

FrameColumn WriteIntervals(const BinModel& model, const AttributeBins& bins, std::string name,
                           const std::vector<std::int32_t>& indexes) {
  const VariableInfo& attribute = model.GetAttribute(bins);
  if (attribute.IsCategorical()) {
    throw MCBinModel::Refusal(
        MCBinModel::RefusalCode::kInput, {.place = {}, .subject = attribute.name, .detail = {}},
        "the bins of '" + attribute.name + "' are categories and no intervals; ask for labels");
  }
  std::vector<double> left = {-std::numeric_limits<double>::infinity()};
  left.insert(left.end(), bins.cutPoints.begin(), bins.cutPoints.end());
  std::vector<double> right = bins.cutPoints;
  right.push_back(std::numeric_limits<double>::infinity());
  return MakeIntervals(std::move(name), TakeValues(indexes, left), TakeValues(indexes, right));
}

FrameColumn Write(const BinModel& model, const AttributeBins& bins, Form form, std::string name,
                  std::vector<std::int32_t> indexes) {
  switch (form) {
    case Form::kLabel:
      return WriteLabels(model, bins, std::move(name), std::move(indexes));
    case Form::kEvidence:
      return WriteEvidence(model, bins, std::move(name), indexes);
    case Form::kInterval:
      return WriteIntervals(model, bins, std::move(name), indexes);
    default:
      return MakeIndexes(std::move(name), std::move(indexes));
  }
}

std::vector<double> CodeColumn(const Column& column, const VariableInfo& variable) {
  std::vector<double> codes(column.length);
  CodeBlocks(column, variable, [&](std::size_t first, std::size_t count, const double* block) {
    std::copy_n(block, count, codes.begin() + static_cast<std::ptrdiff_t>(first));
  });
  return codes;
}

// NaN for the records that are dropped.
std::vector<double> CodeWeights(const Column& column, MCBinModel::WeightCoder& coder) {
  std::vector<double> weights(column.length);
  column.ReadNumbers(0, column.length, weights.data());
  for (double& weight : weights) weight = coder.Code(weight).value_or(kNaN);
  return weights;
}

}  // namespace

Applied Apply(const BinModel& model, const std::vector<std::size_t>& results, const Table& table,
              const ColumnIndexes& columns, Form form, const std::string& suffix) {
  Applied applied;
  applied.frame.length = table.GetLength();
  for (const std::size_t result : results) {
    const AttributeBins& bins = model.results[result];
    const VariableInfo& attribute = model.GetAttribute(bins);
    const Column& column = table.GetColumns()[columns.at(attribute.name)];
    std::vector<std::int32_t> indexes(column.length);
    const std::size_t unknownCount = CodeBlocks(
        column, attribute, [&](std::size_t first, std::size_t count, const double* block) {
          MCBinModel::FindBins(bins.cutPoints, block, count, model.settings.rightClosed,
                               indexes.data() + first);
        });
    if (unknownCount > 0) applied.unknown.emplace(attribute.name, unknownCount);
    applied.frame.Add(Write(model, bins, form, attribute.name + suffix, std::move(indexes)));
  }
  return applied;
}

BinModel CountOn(const BinModel& model, const std::vector<std::size_t>& results, const Table& table,
                 const ColumnIndexes& columns, std::optional<std::size_t> weight,
                 const std::string& name, const std::optional<SummarisedRecords>& summarised,
                 std::string* report) {
  MCBinModel::BinCounter counter(model, results);
  std::vector<std::vector<double>> codes;
  std::vector<const double*> places;
  for (const MCBinModel::BinCounter::Variable& variable : counter.GetVariables()) {
    const VariableInfo& info = variable.GetInfo(model);
    codes.push_back(CodeColumn(table.GetColumns()[columns.at(info.name)], info));
  }
  for (const std::vector<double>& values : codes) places.push_back(values.data());

  BinModel counted = model;
  MCBinModel::BinSource& source = counted.source;
  source.recordCount = summarised ? summarised->count : table.GetLength();
  source.dropped = summarised ? summarised->dropped : MCBinModel::DroppedRecords{};
  const bool hasWeight = summarised ? summarised->weight.has_value() : weight.has_value();
  if (hasWeight) {
    if (!source.weight) source.weight.emplace();
    source.weight->name = summarised ? *summarised->weight : table.GetColumns()[*weight].name;
  } else {
    source.weight.reset();
  }
  std::vector<double> weights;
  if (weight) {
    MCBinModel::WeightCoder coder(summarised ? MCBinModel::WeightInfo{} : *source.weight);
    weights = CodeWeights(table.GetColumns()[*weight], coder);
    coder.CheckRecordsLeft(table.GetLength());
    if (!summarised) source.dropped = coder.GetDropped();
  }
  counter.Add(places.data(), weight ? weights.data() : nullptr, table.GetLength());
  MCBinModel::Recount recount{source.recordCount, source.dropped, counter.Finish()};
  if (report != nullptr) {
    MCBinModel::WriteEvaluationReport(model, recount, name,
                                      [&](std::string_view text) { *report += text; });
  }
  counted.results.clear();
  for (MCBinModel::RecountedBins& found : recount.results) {
    AttributeBins& counts = found.counts;
    if (counts.binWeights.empty()) counts.binWeights.assign(counts.cutPoints.size() + 1, 0.0);
    if (counts.target && counts.classWeights.empty()) {
      const std::size_t classCount = counted.GetTarget(counts)->GetCategoryCount();
      counts.classWeights.assign(counts.binWeights.size(), std::vector(classCount, 0.0));
    }
    counted.results.push_back(std::move(counts));
  }
  return counted;
}

}  // namespace MCBinPython
