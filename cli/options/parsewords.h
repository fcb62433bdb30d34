#pragma once

#include <CLI/CLI.hpp>
#include <string>
#include <vector>

namespace MCBin {

// "a, b or c".
std::string OneOf(const std::vector<std::string>& choices);

// What is wrong with a command line, and where help is, for people who know nothing of its parser.
std::string ExplainParseError(const CLI::App& app, const CLI::ParseError& error);

}  // namespace MCBin
