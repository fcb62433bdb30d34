#include "cli/commands/modeloutput.h"

#include <algorithm>
#include <string_view>

#include "binmodel/file/binfile.h"
#include "binmodel/model/severity.h"
#include "cli/terminal/exitguard.h"
#include "cli/terminal/terminalstyle.h"
#include "cli/terminal/usageerror.h"

namespace MCBin {

MCBinModel::TextStyle MakeTextStyle(const TableOptions& options) {
  MCBinModel::TextStyle style = ChooseTextStyle(options.color);
  style.format = options.format;
  style.summaryOnly = options.summaryOnly;
  style.top = static_cast<std::size_t>(options.top);
  return style;
}

ModelOutput::ModelOutput(const ModelOutputOptions& options)
    : fStyle(MakeTextStyle(options.tables)), fJsonOnly(options.jsonFile == "-") {
  if (options.jsonFile && *options.jsonFile != "-") fJsonFile.emplace(*options.jsonFile);
  if (options.reportFile) fReportFile.emplace(*options.reportFile);
}

void ModelOutput::Write(const MCBinModel::BinModel& model) {
  if (fReportFile) fReportFile->Write(MCBinModel::MakeHtmlReport(model));
  if (fJsonFile) fJsonFile->Write(MCBinModel::WriteBinFile(model));
  if (fReportFile) fReportFile->Commit();
  if (fJsonFile) fJsonFile->Commit();
  if (fJsonOnly) {
    fOut.WriteContent(MCBinModel::WriteBinFile(model));
  } else {
    MCBinModel::WriteTextReport(model, fStyle, [&](std::string_view text) { fOut.Write(text); });
  }
  fOut.Close();
}

int ExitCodeOf(const MCBinModel::BinModel& model, bool strict) {
  const bool allOk = std::all_of(
      model.results.begin(), model.results.end(), [](const MCBinModel::AttributeBins& bins) {
        return bins.status.IsOK() || MCBinModel::IsPlainNoCut(bins.status);
      });
  return strict && !allOk ? kExitWarnings : kExitDone;
}

void CheckModelOutput(const std::vector<CommandInput>& inputs, const ModelOutputOptions& options) {
  if (options.reportFile == "-") {
    throw UsageError("--report: give a file; 'mcbin report' writes to standard output");
  }
  const TableOptions& tables = options.tables;
  const bool tablesAsked =
      tables.format != MCBinModel::TableFormat::kText || tables.summaryOnly || tables.top > 0;
  if (options.jsonFile == "-" && tablesAsked) {
    throw UsageError(
        "--json -: writes the bin file to standard output, and so no tables; give a file, or leave "
        "--format, --summary and --top out");
  }
  CheckFiles(inputs, {{"--json", options.jsonFile}, {"--report", options.reportFile}});
}

}  // namespace MCBin
