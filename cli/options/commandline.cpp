#include "cli/options/commandline.h"

#include <fmt/format.h>

#include <algorithm>
#include <memory>
#include <sstream>
#include <string>
#include <utility>
#include <vector>

#include "cli/options/optionspelling.h"
#include "cli/options/parsewords.h"
#include "cli/terminal/notes.h"
#include "cli/terminal/resultstream.h"
#include "cli/terminal/usageerror.h"

namespace MCBin {

namespace {

constexpr const char* kHelpGroup = "Help";
constexpr std::size_t kShortHelpWidth = 76;
constexpr const char* kToolHelp =
    "Bins the variables of a CSV file.\n"
    "  mcbin supervised --target species iris.csv      cut points that separate the classes\n"
    "  mcbin equal-frequency --bins 10 sales.csv       bins of equal weight, without a target\n"
    "  mcbin refine --max-bins 5 bins.json             fewer bins, of the kind you need\n"
    "  mcbin apply bins.json new.csv                   the bins of other data\n"
    "  mcbin evaluate bins.json new.csv                how the bins do on other data\n"
    "  mcbin export --format sql --table T bins.json   the bins as SQL, PMML or Python\n"
    "  mcbin report bins.json -o report.html           charts and tables as an HTML page\n"
    "  mcbin help supervised                           the options of a command\n";

// Help that begins with examples: the first line of a command's description says what it
// does, the lines after it are its examples. A list of commands shows the first lines alone.
class HelpFormatter : public CLI::Formatter {
 public:
  HelpFormatter() {
    column_width(30);
    label("SUBCOMMAND", "COMMAND");
  }

  std::string make_description(const CLI::App* app) const override {
    const std::string description = app->get_description();
    const std::size_t lineEnd = description.find('\n');
    if (lineEnd == std::string::npos) return description + "\n\n";
    return fmt::format("{}\n\n{}\n", description.substr(0, lineEnd),
                       description.substr(lineEnd + 1));
  }

  // With -h: what there is, by name.
  std::string make_help(const CLI::App* app, std::string name,
                        CLI::AppFormatMode mode) const override {
    if (mode != CLI::AppFormatMode::All || app->get_parent() == nullptr) {
      return CLI::Formatter::make_help(app, name, CLI::AppFormatMode::Normal);
    }
    std::string text = make_description(app) + make_usage(app, name);
    for (const std::string& group : app->get_groups()) {
      std::string names;  // in lines
      std::size_t width = 0;
      for (const CLI::Option* option : app->get_options()) {
        if (!option->nonpositional() || option->get_group() != group) continue;
        const std::string spelling = option->get_name(false, true);  // "-t,--target"
        if (!names.empty()) names += ',';
        const bool isNewLine = names.empty() || width + spelling.size() > kShortHelpWidth;
        names += isNewLine ? names.empty() ? "  " : "\n  " : " ";
        names += spelling;
        width = (isNewLine ? 0 : width) + spelling.size() + 2;
      }
      if (!names.empty()) text += fmt::format("{}:\n{}\n", group, names);
    }
    return text + fmt::format("\n'mcbin {} --help' explains them.\n", app->get_name());
  }

  std::string make_subcommand(const CLI::App* app) const override {
    const std::string description = app->get_description();
    std::ostringstream line;
    CLI::detail::format_help(line, app->get_display_name(true),
                             description.substr(0, description.find('\n')), get_column_width());
    return line.str();
  }
};

int Print(const std::string& text, int exitCode) {
  ResultStream out;
  out.Write(text);
  out.Close();
  return exitCode;
}

}  // namespace

void AddCommands(CLI::App& app, CommandAction& action) {
  app.name("mcbin");
  app.description(kToolHelp);
  app.formatter(std::make_shared<HelpFormatter>());
  app.set_help_flag("--help", "explain every option")->group(kHelpGroup);
  app.set_help_all_flag("-h", "the options by name")->group(kHelpGroup);
  app.set_version_flag("--version", "mcbin " MCBINNING_VERSION, "print the version")
      ->group(kHelpGroup);
  app.require_subcommand(1);
  AddRunCommands(app, action);
  AddApplyCommand(app, action);
  AddEvaluateCommand(app, action);
  AddExportCommand(app, action);
  AddRefineCommand(app, action);
  AddReportCommand(app, action);
  for (CLI::App* command : app.get_subcommands(nullptr)) command->group("Commands");
}

CommandLine ParseCommandLine(int argc, const char* const* argv) {
  CLI::App app;
  CommandAction action;
  AddCommands(app, action);
  if (argc <= 1) {
    return {[text = app.help()] { return Print(text, kExitUsage); }, kExitDone};
  }
  try {
    std::vector<std::string> arguments = CorrectArguments(app, {argv + 1, argv + argc});
    std::reverse(arguments.begin(), arguments.end());  // as CLI11 takes them
    app.parse(std::move(arguments));
    return {action, kExitDone};
  } catch (const CLI::Success& asked) {  // --help, --version
    std::ostringstream text;
    app.exit(asked, text);
    return {[text = text.str()] { return Print(text, kExitDone); }, kExitDone};
  } catch (const CLI::ParseError& error) {
    PrintNote(ExplainParseError(app, error));
  } catch (const UsageError& error) {
    PrintNote(error.what());
  }
  return {nullptr, kExitUsage};
}

}  // namespace MCBin
