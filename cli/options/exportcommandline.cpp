#include <memory>
#include <string>

#include "binmodel/export/binexport.h"
#include "cli/commands/commands.h"
#include "cli/options/commandline.h"
#include "cli/options/commandoptions.h"
#include "cli/terminal/usageerror.h"

namespace MCBin {

namespace {

constexpr const char* kHelp =
    "Writes the bins of a bin file as SQL, PMML or Python.\n"
    "  mcbin export --format sql --dialect postgresql --table sales bins.json\n"
    "  mcbin export --format pmml --as label -o bins.pmml bins.json\n"
    "  mcbin export --format python -o bins.py bins.json\n";

constexpr const char* kFooter =
    "Values get the bins that 'mcbin apply' gives them. PMML is of version 4.4, a\n"
    "TransformationDictionary; the Python module needs NumPy only.\n"
    "Exit codes: 0 done, 1 input refused or run failed, 2 wrong usage, 130 cancelled.";

struct RawOptions {
  ExportOptions exported;
  std::string format;
  std::string form = "index";
};

ExportOptions Finish(RawOptions raw, bool dialectGiven) {
  ExportOptions& exported = raw.exported;
  if (raw.format == "pmml") exported.format = ExportFormat::kPmml;
  if (raw.format == "python") exported.format = ExportFormat::kPython;
  exported.columns.form = ParseBinForm(raw.form);
  const bool isSql = exported.format == ExportFormat::kSql;
  if (isSql && exported.table.empty()) {
    throw UsageError("--format sql needs --table, the table to read from");
  }
  if (!isSql && (dialectGiven || !exported.table.empty())) {
    throw UsageError("--dialect and --table belong to --format sql");
  }
  return exported;
}

}  // namespace

void AddExportCommand(CLI::App& app, CommandAction& action) {
  const auto raw = std::make_shared<RawOptions>();
  ExportOptions& exported = raw->exported;
  CLI::App& command = *app.add_subcommand("export", kHelp);
  AddBinFile(command, exported.binFile);
  AddChoice(command, "--format", raw->format, {"sql", "pmml", "python"}, "what to write");
  command.get_option("--format")->required();
  AddChoice(command, "--dialect", exported.dialect, MCBinModel::SqlDialectNames(), "of SQL (ansi)");
  command.add_option("--table", exported.table, "of SQL: the table, or SCHEMA.TABLE")
      ->type_name("NAME");
  AddTargetOfBins(command, exported.target);
  AddBinForm(command, raw->form);
  command.add_option("--suffix", exported.columns.suffix, "of the new columns' names (_bin)")
      ->type_name("TEXT");
  AddMissingAs(command, exported.columns.missingText, "VALUE",
               "for a missing value (as in the bin file, or none)");
  AddEvidenceOfBins(command, exported.evidence);
  command.add_option("-o,--output", exported.output, "write to FILE (standard output)")
      ->type_name("FILE");
  command.add_flag("--quiet", exported.quiet, "no notes on standard error");
  command.footer(kFooter);
  const CLI::Option* const dialect = command.get_option("--dialect");
  command.callback([raw, dialect, &action] {
    action = [options = Finish(*raw, dialect->count() > 0)] { return ExportCommand(options); };
  });
}

}  // namespace MCBin
