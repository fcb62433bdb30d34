#include "cli/options/commandoptions.h"

#include <fmt/format.h>

#include <algorithm>
#include <charconv>
#include <limits>
#include <string_view>
#include <system_error>
#include <utility>

#include "binmodel/model/binsettings.h"
#include "binmodel/text/displaytext.h"
#include "cli/options/optionlist.h"
#include "cli/options/parsewords.h"
#include "cli/terminal/usageerror.h"

namespace MCBin {

namespace {

const std::vector<std::pair<std::string, MCBinModel::TableFormat>> kTableFormats = {
    {"text", MCBinModel::TableFormat::kText},
    {"csv", MCBinModel::TableFormat::kCsv},
    {"tsv", MCBinModel::TableFormat::kTsv},
    {"json", MCBinModel::TableFormat::kJson},
    {"markdown", MCBinModel::TableFormat::kMarkdown}};

// NaN is none.
CLI::Validator NumberBetween(double least, double most) {
  return CLI::Validator(
      [least, most](const std::string& text) {
        double number = 0.0;
        const bool fits =
            CLI::detail::lexical_cast(text, number) && number >= least && number <= most;
        return fits ? std::string()
                    : fmt::format("a number from {} to {} is expected, not {}", least, most,
                                  MCBinModel::QuotedText(text));
      },
      "");
}

CLI::Validator WholeNumberFrom(int least) {
  return CLI::Validator(
      [least](const std::string& text) {
        int number = 0;
        const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number);
        const bool isNumber = error == std::errc() && end == text.data() + text.size();
        return isNumber && number >= least
                   ? std::string()
                   : fmt::format("a whole number from {} to {} is expected, not {}", least,
                                 std::numeric_limits<int>::max(), MCBinModel::QuotedText(text));
      },
      "");
}

void CheckDiffer(const char* flag, std::vector<std::string> names) {
  std::sort(names.begin(), names.end());
  const auto twice = std::adjacent_find(names.begin(), names.end());
  if (twice == names.end()) return;
  throw UsageError(fmt::format("{}: {} is named twice", flag, MCBinModel::QuotedText(*twice)));
}

void AddEvidenceOptions(CLI::App& command, EvidenceOptions& options, const char* defaultEvent,
                        const char* defaultAdjustment) {
  AddList(command, "--event", options.events, "CLASS",
          fmt::format("class that weight of evidence is about ({})", defaultEvent));
  command
      .add_option(
          "--woe-adjust", options.adjustment,
          fmt::format("add to both class weights of every bin for it ({})", defaultAdjustment))
      ->check(NumberBetween(0.0, MCBinModel::kLargestEvidenceAdjustment))
      ->type_name("WEIGHT");
}

}  // namespace

OptionGroup::OptionGroup(CLI::App& command, std::string name)
    : fCommand(command), fName(std::move(name)), fFirst(command.get_options().size()) {}

OptionGroup::~OptionGroup() {
  for (CLI::Option* option : GetOptions()) {
    if (option->get_group() == "Options") option->group(fName);
  }
}

std::vector<CLI::Option*> OptionGroup::GetOptions() const {
  const std::vector<CLI::Option*> all = fCommand.get_options();
  return {all.begin() + static_cast<std::ptrdiff_t>(fFirst), all.end()};
}

void AddList(CLI::App& command, const std::string& flag, std::vector<std::string>& values,
             const std::string& typeName, const std::string& help) {
  command.add_option(flag, values, help)->allow_extra_args(false)->type_name(typeName);
}

void AddChoice(CLI::App& command, const std::string& flag, std::string& value,
               const std::vector<std::string>& choices, const std::string& help) {
  command.add_option(flag, value, help)
      ->check(CLI::Validator(
          [choices](const std::string& text) {
            const bool isOne = std::find(choices.begin(), choices.end(), text) != choices.end();
            return isOne ? std::string()
                         : fmt::format("{} is expected, not {}", OneOf(choices),
                                       MCBinModel::QuotedText(text));
          },
          ""))
      ->type_name(fmt::format("{}", fmt::join(choices, "|")));
}

void AddNumber(CLI::App& command, const std::string& flag, double& value, double least, double most,
               const std::string& typeName, const std::string& help) {
  command.add_option(flag, value, help)->check(NumberBetween(least, most))->type_name(typeName);
}

void AddEvidence(CLI::App& command, EvidenceOptions& options) {
  AddEvidenceOptions(command, options, "larger number, later text", "0");
}

void AddEvidenceOfBins(CLI::App& command, EvidenceOptions& options) {
  AddEvidenceOptions(command, options, "as in the bin file", "as in the bin file");
}

void AddClasses(CLI::App& command, EvidenceOptions& options) {
  command
      .add_option_function<std::vector<std::string>>(
          "--classes",
          [&options](const std::vector<std::string>& lists) {
            options.classes = JoinLists(lists);
            CheckDiffer("--classes", options.classes);
          },
          "classes in the order to show them; others follow by number or text")
      ->allow_extra_args(false)
      ->type_name("NAMES");
}

void AddCount(CLI::App& command, const char* flag, int& count, int least, const char* help) {
  command.add_option(flag, count, help)->check(WholeNumberFrom(least))->type_name("N");
}

void AddTables(CLI::App& command, RawTables& raw, TableOptions& options) {
  std::vector<std::string> names;
  for (const auto& [name, format] : kTableFormats) names.push_back(name);
  AddChoice(command, "--format", raw.format, names,
            "what the tables are written as (text); csv, tsv, json with all digits");
  command.add_flag("--summary", options.summaryOnly,
                   "only the line of each attribute, not its bins");
  AddCount(command, "--top", options.top, 1, "only the first N of them, with all their tables");
  AddChoice(command, "--color", raw.color, {"auto", "always", "never"},
            "colours on standard output (auto)");
}

void ParseTables(const RawTables& raw, TableOptions& options) {
  for (const auto& [name, format] : kTableFormats) {
    if (name == raw.format) options.format = format;
  }
  if (raw.color == "always") options.color = ColorChoice::kAlways;
  if (raw.color == "never") options.color = ColorChoice::kNever;
}

void AddModelOutput(CLI::App& command, const char* jsonFlags, RawTables& raw,
                    ModelOutputOptions& options) {
  command
      .add_option(jsonFlags, options.jsonFile, "also write the bins to FILE; '-': to stdout only")
      ->type_name("FILE");
  command.add_option("--report", options.reportFile, "also write an HTML page with charts")
      ->type_name("FILE");
  AddTables(command, raw, options.tables);
  command.add_flag("--quiet", options.quiet, "no progress and no notes on standard error");
  command.add_flag("--strict", options.strict, "exit code 3 when a result has a warning or error");
}

void AddBinFile(CLI::App& command, std::string& path) {
  command.add_option("BINS", path, "bin file; '-': stdin")->required()->type_name("");
}

void AddCsvFile(CLI::App& command, std::string& path) {
  command.add_option("FILE", path, "CSV file with a header row; '-' or none: stdin")->type_name("");
}

void AddTargetOfBins(CLI::App& command, std::optional<std::string>& target) {
  command.add_option("-t,--target", target, "which target's bins, when there are several")
      ->type_name("NAME");
}

void AddBinsAndData(CLI::App& command, DataOptions& options) {
  AddBinFile(command, options.binFile);
  AddCsvFile(command, options.input);
  AddTargetOfBins(command, options.target);
}

void AddFileFormat(CLI::App& command, RawFileFormat& raw, const UsualFileFormat& usual) {
  command
      .add_option("--delimiter", raw.delimiter,
                  fmt::format("field delimiter; tab or '\\t' for a tab ({})", usual.delimiter))
      ->type_name("CHAR");
  AddChoice(command, "--decimal", raw.decimal, {".", ","},
            fmt::format("decimal mark of numbers ({})", usual.decimal));
  command
      .add_option("--thousands", raw.thousands,
                  fmt::format("mark between groups of three digits ({})", usual.thousands))
      ->type_name("CHAR");
}

FileFormatOptions ParseFileFormat(const RawFileFormat& raw) {
  FileFormatOptions format;
  if (raw.delimiter) format.delimiter = ParseDelimiter(*raw.delimiter);
  if (!raw.decimal.empty()) format.decimal = raw.decimal.front();
  if (!raw.thousands) return format;
  const bool isMark = raw.thousands->size() <= 1 &&
                      std::string_view(".,' _").find(*raw.thousands) != std::string_view::npos;
  if (!isMark) {
    throw UsageError("--thousands: give one of . , ' _ and blank, or '' when there is none");
  }
  format.thousands = raw.thousands->empty() ? '\0' : raw.thousands->front();
  return format;
}

void AddMissingTexts(CLI::App& command, RawMissingTexts& raw, const char* usual) {
  AddList(command, "--na", raw.added, "TEXTS",
          fmt::format("texts that mean missing, beside an empty field and {}", usual));
  AddList(command, "--na-only", raw.only, "TEXTS", fmt::format("the same, in place of {}", usual));
}

MissingTextOptions ParseMissingTexts(const RawMissingTexts& raw) {
  MissingTextOptions options{JoinMissingTexts(raw.added), {}};
  if (!raw.only.empty()) options.only = JoinMissingTexts(raw.only);
  return options;
}

void AddReading(CLI::App& command, RawReading& raw, DataOptions& options) {
  AddMissingTexts(command, raw.missingTexts, "the bin file's");
  constexpr const char* kUsual = "as in the bin file";
  AddFileFormat(command, raw.format, {kUsual, kUsual, kUsual});
  command.add_flag("--quiet", options.quiet, "no progress and no notes on standard error");
}

void ParseReading(const RawReading& raw, DataOptions& options) {
  options.format = ParseFileFormat(raw.format);
  options.missingTexts = ParseMissingTexts(raw.missingTexts);
}

void AddMissingAs(CLI::App& command, std::optional<std::string>& text, const std::string& typeName,
                  const std::string& help) {
  command
      .add_option_function<std::string>(
          "--missing-as", [&text](const std::string& value) { text = value; }, help)
      ->type_name(typeName);
}

void AddBinForm(CLI::App& command, std::string& form) {
  AddChoice(command, "--as", form, {"index", "label", "woe"},
            "how a bin is written (index); woe: weight of evidence");
}

MCBinModel::BinForm ParseBinForm(const std::string& form) {
  if (form == "label") return MCBinModel::BinForm::kLabel;
  return form == "woe" ? MCBinModel::BinForm::kWeightOfEvidence : MCBinModel::BinForm::kIndex;
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

std::vector<std::string> JoinMissingTexts(const std::vector<std::string>& lists) {
  std::vector<std::string> texts;
  for (const std::string& list : lists) {
    for (OptionItem& item : SplitOptionList(list)) {
      texts.push_back(item.quoted && item.text.empty() ? "\"\"" : std::move(item.text));
    }
  }
  return texts;
}

}  // namespace MCBin
