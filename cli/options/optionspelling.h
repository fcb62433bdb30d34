#pragma once

#include <CLI/CLI.hpp>
#include <string>
#include <vector>

namespace MCBin {

// The arguments of `mcbin` as they were meant: "help COMMAND" is "COMMAND --help", and an option
// that lacks or has an s too many (--attribute) is the one that exists. Throws UsageError for
// another option or command that there is not, with the nearest one, and for an option whose value
// is another option's name.
std::vector<std::string> CorrectArguments(const CLI::App& app, std::vector<std::string> arguments);

}  // namespace MCBin
