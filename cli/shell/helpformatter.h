#pragma once

#include <CLI/CLI.hpp>
#include <string>

namespace MCBin {

// Help that begins with examples: the first line of a command's description says what it
// does, the lines after it are its examples. A list of commands shows the first lines alone.
class HelpFormatter : public CLI::Formatter {
 public:
  HelpFormatter() { column_width(30); }

  std::string make_description(const CLI::App* app) const override;
  std::string make_subcommand(const CLI::App* app) const override;
};

}  // namespace MCBin
