#include "cli/options/optionspelling.h"

#include <fmt/format.h>
#include <fmt/ranges.h>

#include <algorithm>
#include <cctype>
#include <iterator>
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

// The names that are near, or begin so.
Names FindMeant(const Names& names, const std::string& name) {
  Names meant = MCBinModel::FindSimilar(names, name);
  if (!meant.empty() || name.empty()) return meant;
  std::copy_if(names.begin(), names.end(), std::back_inserter(meant),
               [&](const std::string& other) { return other.starts_with(name); });
  return meant;
}

[[noreturn]] void RefuseCommand(const Names& commands, const std::string& name) {
  const Names near = FindMeant(commands, name);
  throw UsageError(fmt::format(
      "there is no command {}; {} {}\nRun mcbin --help for more.", MCBinModel::QuotedText(name),
      near.empty() ? "the commands are"
                   : fmt::format("did you mean {}? The commands are", fmt::join(near, " or ")),
      fmt::join(commands, ", ")));
}

// `command` is "mcbin", or one with its command.
[[noreturn]] void RefuseOption(const std::string& option, const std::string& name,
                               const Names& names, const std::string& command) {
  const Names near = FindMeant(names, name);
  throw UsageError(fmt::format(
      "there is no option {}{}\nRun {} --help for the options.", MCBinModel::QuotedText(option),
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

bool TakesValue(const CLI::App& command, const std::string& option) {
  const CLI::Option* const taken = command.get_option_no_throw(option);
  return taken != nullptr && taken->get_items_expected_min() > 0;
}

// Such as -q; but -1 is a value, and so may be what stands behind an option.
bool IsUnknownLetter(const CLI::App& command, const std::string& argument,
                     const std::string& previous) {
  const bool isLetter = argument.size() == 2 && argument[0] == '-' &&
                        std::isalpha(static_cast<unsigned char>(argument[1])) != 0;
  return isLetter && command.get_option_no_throw(argument) == nullptr &&
         !TakesValue(command, previous);
}

// That letter is refused: the same one in the other case may be meant, or a name that begins so.
[[noreturn]] void RefuseLetter(const CLI::App& command, const std::string& argument,
                               const std::string& called) {
  const auto letter = static_cast<unsigned char>(argument[1]);
  const bool isLower = std::islower(letter) != 0;
  const std::string other(1,
                          static_cast<char>(isLower ? std::toupper(letter) : std::tolower(letter)));
  if (command.get_option_no_throw("-" + other) == nullptr) {
    RefuseOption(argument, isLower ? argument.substr(1) : other, LongNamesOf(command), called);
  }
  throw UsageError(
      fmt::format("there is no option '{}'; did you mean -{}?\n"
                  "Run {} --help for the options.",
                  argument, other, called));
}

// An option in place of a value is none: the value was forgotten.
void CheckHasValue(const CLI::App& command, const std::string& option, const std::string& next) {
  if (!TakesValue(command, option)) return;
  if (next.substr(0, 2) != "--" || !Contains(LongNamesOf(command), next.substr(2))) return;
  throw UsageError(
      fmt::format("{}: a value is missing before {}; write {}{}{} if this is the value", option,
                  next, option, option[1] == '-' ? "=" : "", next));
}

}  // namespace

std::vector<std::string> CorrectArguments(const CLI::App& app, std::vector<std::string> arguments) {
  if (arguments.empty()) return arguments;
  const std::vector<const CLI::App*> commands = app.get_subcommands(nullptr);
  Names commandNames;
  for (const CLI::App* command : commands) commandNames.push_back(command->get_name());
  if (arguments[0] == "help") {
    const bool isOther = arguments.size() > 1 && arguments[1][0] != '-' && arguments[1] != "help" &&
                         !Contains(commandNames, arguments[1]);
    if (isOther) RefuseCommand(commandNames, arguments[1]);
    arguments.erase(arguments.begin());
    arguments.resize(std::min<std::size_t>(arguments.size(), 1));
    arguments.emplace_back("--help");
  }
  const auto command = std::find_if(commands.begin(), commands.end(), [&](const CLI::App* other) {
    return other->get_name() == arguments[0];
  });
  if (command == commands.end()) {
    const std::string& first = arguments[0];
    if (first.empty() || first[0] != '-') RefuseCommand(commandNames, first);
    if (first.size() > 2 && first[1] == '-') Correct(first, LongNamesOf(app), "mcbin");
    if (IsUnknownLetter(app, first, "")) RefuseLetter(app, first, "mcbin");
    return arguments;
  }
  const Names names = LongNamesOf(**command);
  for (std::size_t i = 1; i < arguments.size() && arguments[i] != "--"; ++i) {
    std::string& argument = arguments[i];
    const bool isOption = argument.size() > 2 && argument[0] == '-';
    const std::string called = "mcbin " + (*command)->get_name();
    if (isOption) argument = Correct(argument, names, called);
    if (IsUnknownLetter(**command, argument, arguments[i - 1])) {
      RefuseLetter(**command, argument, called);
    }
    const bool mayTakeNext = argument.size() > 1 && argument[0] == '-' && i + 1 < arguments.size();
    if (mayTakeNext) CheckHasValue(**command, argument, arguments[i + 1]);
  }
  return arguments;
}

}  // namespace MCBin
