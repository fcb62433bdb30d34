#include "cli/commandline.h"

#include <fmt/format.h>

#include <CLI/CLI.hpp>
#include <cstdio>
#include <limits>
#include <memory>
#include <string_view>

#include "cli/displaytext.h"
#include "cli/exitcode.h"
#include "cli/optionlist.h"
#include "cli/usageerror.h"

namespace MCBin {

namespace {

constexpr const char* kSupervised = "supervised";
constexpr const char* kEqualFrequency = "equal-frequency";

constexpr const char* kToolExamples =
    "  mcbin supervised --target species iris.csv      cut points that separate the classes\n"
    "  mcbin equal-frequency --bins 10 sales.csv       bins of equal weight, without a target\n"
    "  mcbin supervised --help                         the options of a command\n";

constexpr const char* kSupervisedExamples =
    "  mcbin supervised --target species iris.csv\n"
    "  mcbin supervised --target churn --weight w --attributes age,income customers.csv\n"
    "  zcat big.csv.gz | mcbin supervised --target y --json bins.json\n";

constexpr const char* kEqualFrequencyExamples =
    "  mcbin equal-frequency --bins 10 sales.csv\n"
    "  mcbin equal-frequency --bins 4 --attributes price,area --json bins.json homes.csv\n";

constexpr const char* kFooter =
    "Lists are separated by commas; an option with a list may be repeated.\n"
    "Exit codes: 0 done, 1 input refused or run failed, 2 wrong usage,\n"
    "3 with --strict when a result has a warning or an error, 130 cancelled.";

// Help that begins with examples.
class HelpFormatter : public CLI::Formatter {
 public:
  HelpFormatter() { column_width(30); }

  std::string make_description(const CLI::App* app) const override {
    const std::string name = app->get_name();
    const char* const examples = name == kSupervised       ? kSupervisedExamples
                                 : name == kEqualFrequency ? kEqualFrequencyExamples
                                                           : kToolExamples;
    return fmt::format("{}\n\n{}\n", app->get_description(), examples);
  }
};

// The options as CLI11 fills them; what needs a second look is still text.
struct RawOptions {
  RunOptions run;
  std::string delimiter = ",";
  std::vector<std::string> targets;
  std::vector<std::string> attributes;
  std::vector<std::string> categorical;
  std::vector<std::string> continuous;
  std::vector<std::string> missingTexts;
  std::vector<std::string> missing;
  std::string rounding = "closest";
  std::string closed = "right";
};

// An option that may be repeated and takes one text each time.
void AddList(CLI::App& command, const std::string& flag, std::vector<std::string>& values,
             const std::string& typeName, const std::string& help) {
  command.add_option(flag, values, help)->allow_extra_args(false)->type_name(typeName);
}

void AddChoice(CLI::App& command, const std::string& flag, std::string& value,
               const std::vector<std::string>& choices, const std::string& help) {
  command.add_option(flag, value, help)
      ->check(CLI::IsMember(choices).description(""))
      ->type_name(fmt::format("{}", fmt::join(choices, "|")));
}

void AddInputOptions(CLI::App& command, RawOptions& raw) {
  command.add_option("FILE", raw.run.input, "CSV file with a header row; '-' or none: stdin")
      ->type_name("");
  AddList(command, "--attributes", raw.attributes, "NAMES",
          "columns to bin (default: every continuous column)");
  AddList(command, "--categorical", raw.categorical, "NAMES",
          "columns to read as categories; as attributes binned by code");
  AddList(command, "--continuous", raw.continuous, "NAMES",
          "columns to read as numbers; other text is an error");
  command.add_option("--weight", raw.run.weight, "column of frequency weights")->type_name("NAME");
  AddChoice(command, "--rounding", raw.rounding, {"closest", "truncate"},
            "how weights become whole numbers (closest)");
  AddList(command, "--na", raw.missingTexts, "TEXTS",
          "texts that mean missing, beside the empty field (NA)");
  AddList(command, "--missing", raw.missing, "NAME=VALUES",
          "values of a column that count as missing: v1,v2,low:high");
  command.add_option("--delimiter", raw.delimiter, "field delimiter; tab or '\\t' for a tab (,)")
      ->type_name("CHAR");
}

void AddRunOptions(CLI::App& command, RawOptions& raw) {
  AddChoice(command, "--closed", raw.closed, {"right", "left"},
            "border that belongs to a bin (right)");
  command
      .add_option("--json", raw.run.jsonFile, "also write the bins to FILE; '-': to stdout only")
      ->type_name("FILE");
  command.add_option("--temp-dir", raw.run.tempDir, "where temporary files go ($TMPDIR or /tmp)")
      ->type_name("DIR");
  command.add_flag("--quiet", raw.run.quiet, "no progress and no notes on standard error");
  command.add_flag("--strict", raw.run.strict, "exit code 3 when a result has a warning or error");
  command.footer(kFooter);
}

CLI::App& AddSupervised(CLI::App& app, RawOptions& raw) {
  CLI::App& command =
      *app.add_subcommand(kSupervised, "Finds cut points that separate the classes of a target.");
  AddList(command, "--target", raw.targets, "NAME", "column with the classes; may be repeated");
  command.get_option("--target")->required();
  AddInputOptions(command, raw);
  command
      .add_option("--prebin-above", raw.run.prebinAbove,
                  "pre-bin above this many distinct values; 0: never (1000)")
      ->check(CLI::NonNegativeNumber.description(""))
      ->type_name("N");
  command.add_option("--prebins", raw.run.prebins, "number of equal-frequency pre-bins (1000)")
      ->check(CLI::Range(2, std::numeric_limits<int>::max()).description(""))
      ->type_name("N");
  command
      .add_option("--small-bins", raw.run.smallBins,
                  "merge inner bins below this share of a neighbour (0)")
      ->check(CLI::Range(0.0, 1.0).description(""))
      ->type_name("SHARE");
  AddRunOptions(command, raw);
  return command;
}

CLI::App& AddEqualFrequency(CLI::App& app, RawOptions& raw) {
  CLI::App& command =
      *app.add_subcommand(kEqualFrequency, "Divides attributes into bins of about equal weight.");
  command.add_option("--bins", raw.run.bins, "number of bins (10)")
      ->check(CLI::Range(2, std::numeric_limits<int>::max()).description(""))
      ->type_name("N");
  AddInputOptions(command, raw);
  AddRunOptions(command, raw);
  return command;
}

char ParseDelimiter(const std::string& text) {
  if (text == "\\t" || text == "tab") return '\t';
  constexpr std::string_view kReserved("\"\r\n\0", 4);
  const bool oneAscii = text.size() == 1 && static_cast<unsigned char>(text[0]) < 0x80;
  if (!oneAscii || kReserved.find(text[0]) != std::string_view::npos) {
    throw UsageError("--delimiter: give one ASCII character, such as ';', or tab");
  }
  return text[0];
}

std::vector<std::string> JoinLists(const std::vector<std::string>& lists) {
  std::vector<std::string> names;
  for (const std::string& list : lists) {
    for (std::string& name : SplitOptionNames(list)) names.push_back(std::move(name));
  }
  return names;
}

// As JoinLists, but a quoted empty item keeps its quotes: it stands for a quoted empty field.
std::vector<std::string> JoinMissingTexts(const std::vector<std::string>& lists) {
  std::vector<std::string> texts;
  for (const std::string& list : lists) {
    for (OptionItem& item : SplitOptionList(list)) {
      texts.push_back(item.quoted && item.text.empty() ? "\"\"" : std::move(item.text));
    }
  }
  return texts;
}

RunOptions Finish(RawOptions raw) {
  RunOptions& run = raw.run;
  run.rounding =
      raw.rounding == "truncate" ? IBINVariable::RoundTruncate : IBINVariable::RoundClosest;
  run.rightClosed = raw.closed == "right";
  run.delimiter = ParseDelimiter(raw.delimiter);
  run.targets = JoinLists(raw.targets);
  run.attributes = JoinLists(raw.attributes);
  run.categorical = JoinLists(raw.categorical);
  run.continuous = JoinLists(raw.continuous);
  if (!raw.missingTexts.empty()) run.missingTexts = JoinMissingTexts(raw.missingTexts);
  for (const std::string& text : raw.missing) run.missing.push_back(ParseMissingDefinition(text));
  return std::move(run);
}

}  // namespace

CommandLine ParseCommandLine(int argc, const char* const* argv) {
  CLI::App app("Bins the variables of a CSV file.", "mcbin");
  app.formatter(std::make_shared<HelpFormatter>());
  app.set_version_flag("--version", "mcbin " MCBINNING_VERSION);
  app.require_subcommand(1);
  RawOptions raw;
  const CLI::App& supervised = AddSupervised(app, raw);
  AddEqualFrequency(app, raw);

  try {
    app.parse(argc, argv);
    raw.run.algorithm = supervised.parsed() ? Algorithm::kSupervised : Algorithm::kEqualFrequency;
    return {Finish(std::move(raw)), kExitDone};
  } catch (const CLI::Success& asked) {  // --help, --version
    app.exit(asked);
    return {std::nullopt, kExitDone};
  } catch (const CLI::ParseError& error) {
    const bool unknownCommand = app.get_subcommands().empty() && argc > 1 && argv[1][0] != '-';
    const std::string problem =
        unknownCommand ? fmt::format("there is no command {}; the commands are {} and {}",
                                     QuotedText(argv[1]), kSupervised, kEqualFrequency)
                       : error.what();
    fmt::print(stderr, "mcbin: {}\nRun with --help for the options.\n", problem);
  } catch (const UsageError& error) {
    fmt::print(stderr, "mcbin: {}\n", error.what());
  }
  return {std::nullopt, kExitUsage};
}

}  // namespace MCBin
