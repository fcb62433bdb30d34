#include <memory>
#include <string>

#include "cli/commands/commands.h"
#include "cli/options/commandline.h"
#include "cli/options/commandoptions.h"
#include "cli/terminal/usageerror.h"

namespace MCBin {

namespace {

constexpr const char* kHelp =
    "Counts the bins of a bin file on other data and compares.\n"
    "  mcbin evaluate bins.json validation.csv\n"
    "  mcbin evaluate --target churn --weight w bins.json next-month.csv\n"
    "  mcbin evaluate --summary bins.json january.csv february.csv march.csv\n";

constexpr const char* kFooter =
    "Cut points are taken as they are, nothing is binned anew. A file without the target column\n"
    "gets shares and stability only; several files get a table over time. See docs/statistics.md "
    "for the\n"
    "measures; below 0.1 the stability index usually means that little moved.\n"
    "Exit codes: 0 done, 1 input refused or run failed, 2 wrong usage, 130 cancelled.";

struct RawOptions {
  EvaluateOptions evaluate;
  RawReading reading;
  RawTables tables;
};

EvaluateOptions Finish(RawOptions raw) {
  ParseReading(raw.reading, raw.evaluate);
  ParseTables(raw.tables, raw.evaluate.tables);
  if (raw.evaluate.inputs.empty()) raw.evaluate.inputs = {"-"};
  if (raw.evaluate.updateFile &&
      (raw.evaluate.inputs.size() > 1 || raw.evaluate.updateFile == "-")) {
    throw UsageError("--update: give one data file, and a file to write");
  }
  return raw.evaluate;
}

}  // namespace

void AddEvaluateCommand(CLI::App& app, CommandAction& action) {
  const auto raw = std::make_shared<RawOptions>();
  EvaluateOptions& evaluate = raw->evaluate;
  CLI::App& command = *app.add_subcommand("evaluate", kHelp);
  AddBinFile(command, evaluate.binFile);
  command
      .add_option("FILE", evaluate.inputs,
                  "CSV files with a header row, side by side; '-' or none: stdin")
      ->type_name("");
  AddTargetOfBins(command, evaluate.target);
  {
    const OptionGroup group(command, "Output");
    command
        .add_option("--update", evaluate.updateFile,
                    "write the bins with the counts of the data to FILE")
        ->type_name("FILE");
    AddTables(command, raw->tables, evaluate.tables);
  }
  {
    const OptionGroup group(command, "Classes");
    AddEvidenceOfBins(command, evaluate.evidence);
    AddClasses(command, evaluate.evidence);
  }
  const OptionGroup group(command, "Input");
  CLI::Option* const weight =
      command.add_option("--weight", evaluate.weight, "column of weights (as in the bin file)")
          ->type_name("NAME");
  command.add_flag("--unweighted", evaluate.unweighted, "count every record once")
      ->excludes(weight);
  AddReading(command, raw->reading, evaluate);
  command.footer(kFooter);
  command.callback(
      [raw, &action] { action = [options = Finish(*raw)] { return EvaluateCommand(options); }; });
}

}  // namespace MCBin
