#include <memory>
#include <string>

#include "cli/commands/commands.h"
#include "cli/options/commandline.h"
#include "cli/options/commandoptions.h"

namespace MCBin {

namespace {

constexpr const char* kHelp =
    "Adds the bins of a bin file to a CSV file.\n"
    "  mcbin apply bins.json new.csv > binned.csv\n"
    "  mcbin apply --as label --missing-as missing bins.json new.csv\n"
    "  mcbin apply --target churn --as woe --replace bins.json big.csv.gz | gzip > out.gz\n";

constexpr const char* kFooter =
    "A bin's index is 0 for the lowest. Missing values and texts of --na count as in the bin\n"
    "file; values beyond those it was made from are in the end bins. See also 'mcbin evaluate'.\n"
    "Exit codes: 0 done, 1 input refused or run failed, 2 wrong usage, 130 cancelled.";

struct RawOptions {
  ApplyOptions apply;
  std::string form = "index";
  RawReading reading;
};

ApplyOptions Finish(RawOptions raw) {
  raw.apply.columns.form = ParseBinForm(raw.form);
  ParseReading(raw.reading, raw.apply);
  return raw.apply;
}

void AddNewColumns(CLI::App& command, RawOptions& raw) {
  ApplyOptions& apply = raw.apply;
  AddBinForm(command, raw.form);
  CLI::Option* const suffix =
      command.add_option("--suffix", apply.columns.suffix, "of the new columns' names (_bin)")
          ->type_name("TEXT");
  command.add_flag("--replace", apply.columns.replace, "put bins in the attributes' own columns")
      ->excludes(suffix);
  AddMissingAs(command, apply.columns.missingText, "TEXT",
               "text for a missing value (as in the bin file, or an empty field)");
  AddEvidenceOfBins(command, apply.evidence);
  command.add_option("-o,--output", apply.output, "write to FILE (standard output)")
      ->type_name("FILE");
}

}  // namespace

void AddApplyCommand(CLI::App& app, CommandAction& action) {
  const auto raw = std::make_shared<RawOptions>();
  ApplyOptions& apply = raw->apply;
  CLI::App& command = *app.add_subcommand("apply", kHelp);
  AddBinsAndData(command, apply);
  {
    const OptionGroup group(command, "New columns");
    AddNewColumns(command, *raw);
  }
  const OptionGroup group(command, "Input");
  AddReading(command, raw->reading, apply);
  command.footer(kFooter);
  command.callback(
      [raw, &action] { action = [options = Finish(*raw)] { return ApplyCommand(options); }; });
}

}  // namespace MCBin
