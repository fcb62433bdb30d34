#pragma once

#include "cli/commandoptions.h"

namespace MCBin {

// Makes an empty `app` the one of mcbin. Parsing a command sets `action`, which must outlive
// `app`.
void AddCommands(CLI::App& app, CommandAction& action);

// Parses the arguments of `mcbin`, as main() got them.
//
// --help and --version print to standard output; wrong usage is told on standard error.
// In both cases nothing is to be run: there is no action and `exitCode` is set.
struct CommandLine {
  CommandAction action;
  int exitCode = 0;
};
CommandLine ParseCommandLine(int argc, const char* const* argv);

}  // namespace MCBin
