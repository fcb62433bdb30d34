#include "cli/shell/helpformatter.h"

#include <fmt/format.h>

#include <sstream>

namespace MCBin {

std::string HelpFormatter::make_description(const CLI::App* app) const {
  const std::string description = app->get_description();
  const std::size_t lineEnd = description.find('\n');
  if (lineEnd == std::string::npos) return description + "\n\n";
  return fmt::format("{}\n\n{}\n", description.substr(0, lineEnd), description.substr(lineEnd + 1));
}

std::string HelpFormatter::make_subcommand(const CLI::App* app) const {
  const std::string description = app->get_description();
  std::ostringstream line;
  CLI::detail::format_help(line, app->get_display_name(true),
                           description.substr(0, description.find('\n')), get_column_width());
  return line.str();
}

}  // namespace MCBin
