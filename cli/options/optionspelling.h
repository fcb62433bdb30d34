#pragma once

#include <CLI/CLI.hpp>
#include <string>
#include <vector>

namespace MCBin {

// The arguments of `mcbin` as they were meant: "help COMMAND" is "COMMAND --help", and an option
// that lacks or has an s too many (--attribute) is the one that exists. Throws UsageError for
// another option that the command does not have, with the nearest one.
std::vector<std::string> CorrectArguments(const CLI::App& app, std::vector<std::string> arguments);

}  // namespace MCBin
