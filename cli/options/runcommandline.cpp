#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "cli/commands/commands.h"
#include "cli/options/commandline.h"
#include "cli/options/commandoptions.h"
#include "cli/options/missingoption.h"
#include "cli/options/refineoptions.h"
#include "cli/terminal/usageerror.h"

namespace MCBin {

namespace {

constexpr const char* kSupervisedHelp =
    "Finds cut points that separate the classes of a target.\n"
    "  mcbin supervised --target species iris.csv\n"
    "  mcbin supervised --target churn --weight w --attributes age,income customers.csv\n"
    "  mcbin supervised -t y --na '?' --json bins.json big.csv.gz\n"
    "  mcbin supervised -t y --decimal , --exclude 'id*' --summary --top 20 wide.csv\n";

constexpr const char* kEqualFrequencyHelp =
    "Divides attributes into bins of about equal weight.\n"
    "  mcbin equal-frequency --bins 10 sales.csv\n"
    "  mcbin equal-frequency --bins 4 --attributes price,area --json bins.json homes.csv\n"
    "  mcbin equal-frequency --bins 100 --target y --max-bins 5 --monotonic either data.csv\n";

constexpr const char* kFooter =
    "Lists are separated by commas; an option with a list may be repeated.\n"
    "Exit codes: 0 done, 1 input refused or run failed, 2 wrong usage,\n"
    "3 with --strict when a result has a warning or an error, 130 cancelled.";

// The options as CLI11 fills them; what needs a second look is still text.
struct RawOptions {
  RunOptions run;
  RawFileFormat format;
  std::vector<std::string> targets;
  std::vector<std::string> attributes;
  std::vector<std::string> exclude;
  std::vector<std::string> categorical;
  std::vector<std::string> continuous;
  RawMissingTexts missingTexts;
  std::vector<std::string> missing;
  std::string rounding = "closest";
  std::string closed = "right";
  RawTables output;
  RawRefinement refinement;
};

// The targets come before these.
void AddColumnOptions(CLI::App& command, RawOptions& raw) {
  const OptionGroup group(command, "Columns");
  AddList(command, "--attributes", raw.attributes, "NAMES",
          "columns to bin; 'x*' is all that begin so (numbers, dates, booleans)");
  AddList(command, "--exclude", raw.exclude, "NAMES", "columns not to bin");
  AddList(command, "--categorical", raw.categorical, "NAMES",
          "columns to read as categories; as attributes binned by code");
  AddList(command, "--continuous", raw.continuous, "NAMES",
          "columns to read as numbers; other text is an error");
  command.add_option("--weight", raw.run.columns.weight, "column of frequency weights")
      ->type_name("NAME");
  AddChoice(command, "--rounding", raw.rounding, {"closest", "truncate"},
            "how weights become whole numbers (closest)");
}

void AddInputOptions(CLI::App& command, RawOptions& raw) {
  const OptionGroup group(command, "Input");
  command
      .add_option("FILE", raw.run.inputs,
                  "CSV files with one and the same header row; '-' or none: stdin")
      ->type_name("");
  AddMissingTexts(command, raw.missingTexts, "NA");
  AddList(command, "--missing", raw.missing, "NAME=VALUES",
          "values of a column that count as missing: v1,v2,low:high");
  AddFileFormat(command, raw.format, {", or ; with --decimal ,", ".", "none"});
}

void AddRunOptions(CLI::App& command, RawOptions& raw) {
  {
    const OptionGroup group(command, "Output");
    AddModelOutput(command, "--json", raw.output, raw.run);
  }
  AddRefinement(command, raw.refinement);
  const OptionGroup group(command, "Running");
  AddCount(command, "--jobs", raw.run.jobs, 0,
           "attributes binned at the same time; 0: one on every core (1)");
  command.add_option("--temp-dir", raw.run.tempDir, "where temporary files go ($TMPDIR or /tmp)")
      ->type_name("DIR");
  command.footer(kFooter);
}

void AddClosed(CLI::App& command, RawOptions& raw) {
  AddChoice(command, "--closed", raw.closed, {"right", "left"},
            "border that belongs to a bin (right)");
}

CLI::Option* AddTargets(CLI::App& command, RawOptions& raw, const std::string& help) {
  const OptionGroup group(command, "Columns");
  AddList(command, "-t,--target", raw.targets, "NAME", help);
  return command.get_option("--target");
}

// What is measured against targets.
void AddTargetMeasures(CLI::App& command, RawOptions& raw) {
  const OptionGroup group(command, "Classes");
  AddEvidence(command, raw.run.evidence);
  AddClasses(command, raw.run.evidence);
}

CLI::App& AddSupervised(CLI::App& app, RawOptions& raw) {
  CLI::App& command = *app.add_subcommand("supervised", kSupervisedHelp);
  AddTargets(command, raw, "column with the classes; may be repeated")->required();
  AddColumnOptions(command, raw);
  AddInputOptions(command, raw);
  {
    const OptionGroup group(command, "Method");
    AddCount(command, "--prebin-above", raw.run.settings.prebinAbove, 0,
             "pre-bin above this many distinct values; 0: never (1000)");
    AddCount(command, "--prebins", raw.run.settings.prebins, 2,
             "number of equal-frequency pre-bins (1000)");
    AddNumber(command, "--small-bins", raw.run.settings.smallBins, 0.0, 1.0, "SHARE",
              "merge inner bins below this share of a neighbour (0)");
    AddClosed(command, raw);
  }
  AddTargetMeasures(command, raw);
  AddRunOptions(command, raw);
  return command;
}

CLI::App& AddEqualFrequency(CLI::App& app, RawOptions& raw) {
  CLI::App& command = *app.add_subcommand("equal-frequency", kEqualFrequencyHelp);
  {
    const OptionGroup group(command, "Method");
    AddCount(command, "--bins", raw.run.settings.bins, 2, "number of bins (10)");
    AddClosed(command, raw);
  }
  CLI::Option* const target =
      AddTargets(command, raw, "column whose classes are counted in the bins; may be repeated");
  AddColumnOptions(command, raw);
  AddInputOptions(command, raw);
  AddTargetMeasures(command, raw);
  for (const char* const flag : {"--event", "--woe-adjust", "--classes"}) {
    command.get_option(flag)->needs(target);
  }
  AddRunOptions(command, raw);
  return command;
}

RunOptions Finish(RawOptions raw) {
  RunOptions& run = raw.run;
  run.rounding =
      raw.rounding == "truncate" ? IBINVariable::RoundTruncate : IBINVariable::RoundClosest;
  run.settings.rightClosed = raw.closed == "right";
  run.settings.evidenceAdjustment = run.evidence.adjustment.value_or(0.0);
  ParseTables(raw.output, run.tables);
  run.refinement = ParseRefinement(raw.refinement);
  if (raw.targets.empty() && run.refinement && run.refinement->NeedTwoClasses()) {
    throw UsageError(
        "equal-frequency: event rates, event weights and information value need a --target");
  }
  if (run.inputs.empty()) run.inputs = {"-"};
  const FileFormatOptions format = ParseFileFormat(raw.format);
  run.numbers = format.GetNumbers({});
  run.delimiter = format.delimiter.value_or(run.numbers.decimal == ',' ? ';' : ',');
  CheckNumberMarks(run.numbers);
  run.columns.targets = JoinLists(raw.targets);
  run.columns.attributes = JoinLists(raw.attributes);
  run.columns.exclude = JoinLists(raw.exclude);
  run.columns.categorical = JoinLists(raw.categorical);
  run.columns.continuous = JoinLists(raw.continuous);
  run.missingTexts = ParseMissingTexts(raw.missingTexts).GetAll({"NA"}, run.numbers);
  for (const std::string& text : raw.missing)
    run.columns.missing.push_back(ParseMissingOption(text));
  return std::move(run);
}

// Parses into `raw`, which the command shares with its action.
void SetAction(CLI::App& command, const std::shared_ptr<RawOptions>& raw,
               MCBinModel::Algorithm algorithm, CommandAction& action) {
  command.callback([raw, algorithm, &action] {
    raw->run.settings.algorithm = algorithm;
    action = [options = Finish(*raw)] { return RunCommand(options); };
  });
}

}  // namespace

void AddRunCommands(CLI::App& app, CommandAction& action) {
  const auto supervised = std::make_shared<RawOptions>();
  SetAction(AddSupervised(app, *supervised), supervised, MCBinModel::Algorithm::kSupervised,
            action);
  const auto equalFrequency = std::make_shared<RawOptions>();
  SetAction(AddEqualFrequency(app, *equalFrequency), equalFrequency,
            MCBinModel::Algorithm::kEqualFrequency, action);
}

}  // namespace MCBin
