#include <fmt/format.h>
#include <fmt/ranges.h>

#include <cstddef>
#include <optional>
#include <string>
#include <vector>

#include "binmodel/export/binexport.h"
#include "binmodel/export/exportmodel.h"
#include "binmodel/export/sqldialect.h"
#include "binmodel/measure/evidence.h"
#include "binmodel/text/displaytext.h"
#include "binmodel/text/number.h"
#include "cli/commands/commandfiles.h"
#include "cli/commands/commands.h"
#include "cli/terminal/exitguard.h"
#include "cli/terminal/notes.h"
#include "cli/terminal/resultstream.h"

namespace MCBin {

namespace {

// An option that makes no sense shows as such, whatever is in the bin file.
void CheckOptions(const ExportOptions& options) {
  MCBinModel::MissingValueOf(options.columns);
  if (options.format == ExportFormat::kSql) MCBinModel::SplitTableName(options.table);
}

std::string MakeText(const ExportOptions& options, const MCBinModel::BinModel& model,
                     const std::vector<std::size_t>& results) {
  switch (options.format) {
    case ExportFormat::kSql:
      return MCBinModel::ExportSql(model, results, options.columns, options.dialect, options.table);
    case ExportFormat::kPmml:
      return MCBinModel::ExportPmml(model, results, options.columns);
    case ExportFormat::kPython:
      break;
  }
  return MCBinModel::ExportPython(model, results, options.columns);
}

// What `missingText` takes the place of is not in the export.
void PrintInfinite(const MCBinModel::BinModel& model, const std::vector<std::size_t>& results,
                   const std::optional<std::string>& missingText) {
  constexpr std::size_t kMostNamed = 10;
  std::vector<std::string> weights;
  for (const std::size_t index : results) {
    const MCBinModel::AttributeBins& bins = model.results[index];
    MCBinModel::Evidence evidence = MCBinModel::MeasureEvidence(model, bins);
    if (missingText) evidence.missingWeight.reset();
    const double weight = MCBinModel::GetInfiniteWeight(bins, evidence);
    if (weight == 0.0) continue;
    weights.push_back(fmt::format("{} of {} in {}", MCBinModel::FormatNumber(weight),
                                  MCBinModel::FormatNumber(bins.weightWithMissing),
                                  MCBinModel::QuotedText(model.GetAttribute(bins).name)));
  }
  if (weights.empty()) return;
  const bool namesAll = weights.size() <= kMostNamed;
  if (!namesAll) weights.resize(kMostNamed);
  PrintNote(fmt::format(
      "an infinite weight of evidence, as the bin lacks a class: of the weight that the bins were "
      "made from {}{}; --woe-adjust WEIGHT makes it finite",
      fmt::join(weights, ", "), namesAll ? "" : " and more"));
}

}  // namespace

int ExportCommand(const ExportOptions& options) {
  CheckFiles({{"the bin file", options.binFile}}, {{"--output", options.output}});
  CheckOptions(options);
  ResultStream out;
  std::vector<std::string> notes;
  const MCBinModel::BinModel model = LoadBinFile(options.binFile, options.evidence);
  const std::vector<std::size_t> results =
      ChooseResults(model, options.target, options.binFile, notes);
  WriteOutput(options.output, MakeText(options, model, results), out);
  if (options.quiet) return kExitDone;
  PrintNotes(notes);
  if (options.columns.form == MCBinModel::BinForm::kWeightOfEvidence) {
    PrintEvidenceNote(model, results);
    PrintMovedCutPoints(model, results);
    PrintInfinite(model, results, options.columns.missingText);
  }
  return kExitDone;
}

}  // namespace MCBin
