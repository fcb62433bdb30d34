#pragma once

#include <CLI/CLI.hpp>

#include "cli/terminal/exitguard.h"

namespace MCBin {

// Makes an empty `app` the one of mcbin. Parsing a command sets `action`, which must outlive
// `app`.
void AddCommands(CLI::App& app, CommandAction& action);

// One by one. Parsing them throws UsageError for options that contradict each other.
void AddRunCommands(CLI::App& app, CommandAction& action);  // supervised and equal-frequency
void AddApplyCommand(CLI::App& app, CommandAction& action);
void AddEvaluateCommand(CLI::App& app, CommandAction& action);
void AddExportCommand(CLI::App& app, CommandAction& action);
void AddRefineCommand(CLI::App& app, CommandAction& action);
void AddReportCommand(CLI::App& app, CommandAction& action);

// Parses the arguments of `mcbin`, as main() got them.
//
// The action of --help and --version is to print to standard output. Wrong usage is told on
// standard error; then there is no action and `exitCode` is set.
struct CommandLine {
  CommandAction action;
  int exitCode = 0;
};
CommandLine ParseCommandLine(int argc, const char* const* argv);

}  // namespace MCBin
