#include "cli/options/optionspelling.h"

#include <fmt/format.h>
#include <fmt/ranges.h>

#include <algorithm>
#include <string_view>

#include "binmodel/text/displaytext.h"
#include "binmodel/text/similartexts.h"
#include "cli/terminal/usageerror.h"

namespace MCBin {

namespace {

using Names = std::vector<std::string>;

Names LongNamesOf(const CLI::App& command) {
  Names names;
  for (const CLI::Option* option : command.get_options()) {
    for (const std::string& name : option->get_lnames()) names.push_back(name);
  }
  return names;
}

bool Contains(const Names& names, const std::string& name) {
  return std::find(names.begin(), names.end(), name) != names.end();
}

[[noreturn]] void RefuseOption(const std::string& option, const std::string& name,
                               const Names& names, const std::string& command) {
  const Names near = MCBinModel::FindSimilar(names, name);
  throw UsageError(fmt::format(
      "there is no option {}{}\nRun mcbin {} --help for the options.",
      MCBinModel::QuotedText(option),
      near.empty() ? "" : fmt::format("; did you mean --{}?", fmt::join(near, " or --")), command));
}

// An option without its value, which may follow a '='.
std::string Correct(const std::string& argument, const Names& names, const std::string& command) {
  const std::string option = argument.substr(0, argument.find('='));
  const bool hasTwoDashes = option[1] == '-';
  const std::string name = option.substr(hasTwoDashes ? 2 : 1);
  if (hasTwoDashes == Contains(names, name)) return argument;  // also a short one with its value
  if (!hasTwoDashes) RefuseOption(option, name, names, command);
  const std::string value = argument.substr(option.size());
  if (Contains(names, name + "s")) return "--" + name + "s" + value;
  const bool isPlural = !name.empty() && name.back() == 's';
  const std::string singular = name.substr(0, name.size() - (isPlural ? 1 : 0));
  if (Contains(names, singular)) return "--" + singular + value;
  RefuseOption(option, name, names, command);
}

}  // namespace

std::vector<std::string> CorrectArguments(const CLI::App& app, std::vector<std::string> arguments) {
  if (arguments.empty()) return arguments;
  if (arguments[0] == "help") {
    arguments.erase(arguments.begin());
    arguments.resize(std::min<std::size_t>(arguments.size(), 1));
    arguments.emplace_back("--help");
  }
  const std::vector<const CLI::App*> commands = app.get_subcommands(nullptr);
  const auto command = std::find_if(commands.begin(), commands.end(), [&](const CLI::App* other) {
    return other->get_name() == arguments[0];
  });
  if (command == commands.end()) return arguments;
  const Names names = LongNamesOf(**command);
  for (std::size_t i = 1; i < arguments.size() && arguments[i] != "--"; ++i) {
    std::string& argument = arguments[i];
    const bool isOption = argument.size() > 2 && argument[0] == '-';
    if (isOption) argument = Correct(argument, names, (*command)->get_name());
  }
  return arguments;
}

}  // namespace MCBin
