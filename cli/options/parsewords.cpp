#include "cli/options/parsewords.h"

#include <fmt/format.h>
#include <fmt/ranges.h>

#include "binmodel/text/displaytext.h"

namespace MCBin {

namespace {

// The option or argument that an error begins with.
std::string NameIn(const std::string& words) { return words.substr(0, words.find_first_of(": ")); }

std::string ChoicesOf(const CLI::App& command, const std::string& name) {
  const CLI::Option* const option = command.get_option_no_throw(name);
  const std::string type = option == nullptr ? "" : option->get_type_name();
  if (type.find('|') == std::string::npos) return {};
  return ": " + OneOf(CLI::detail::split(type, '|'));
}

std::string Explain(const CLI::App& command, const CLI::ParseError& error) {
  const std::string words = error.what();
  if (dynamic_cast<const CLI::RequiredError*>(&error) != nullptr) {
    return words + ChoicesOf(command, NameIn(words));
  }
  if (dynamic_cast<const CLI::ArgumentMismatch*>(&error) != nullptr) {
    const bool isTwice = words.find("At Most") != std::string::npos;
    const std::string name = NameIn(words);
    return isTwice ? name + " is given more than once"
                   : name + ": a value is missing" + ChoicesOf(command, name);
  }
  if (dynamic_cast<const CLI::ExtrasError*>(&error) != nullptr) {
    const std::string extras = words.substr(words.find(": ") + 2);
    return "too many arguments: " + MCBinModel::PrintableText(extras);
  }
  return words;
}

}  // namespace

std::string OneOf(const std::vector<std::string>& choices) {
  if (choices.size() < 2) return fmt::format("{}", fmt::join(choices, ""));
  return fmt::format("{} or {}", fmt::join(choices.begin(), choices.end() - 1, ", "),
                     choices.back());
}

std::string ExplainParseError(const CLI::App& app, const CLI::ParseError& error) {
  const std::vector<CLI::App*> commands = app.get_subcommands();
  const CLI::App& command = commands.empty() ? app : *commands.front();
  return fmt::format("{}\nRun mcbin {}{}--help for the options.", Explain(command, error),
                     commands.empty() ? "" : command.get_name(), commands.empty() ? "" : " ");
}

}  // namespace MCBin
