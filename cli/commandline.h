#pragma once

#include <optional>

#include "cli/runoptions.h"

namespace MCBin {

// Parses the arguments of `mcbin`, as main() got them.
//
// --help and --version print to standard output; wrong usage is told on standard error.
// In both cases nothing is to be run: the options are empty and `exitCode` is set.
struct CommandLine {
  std::optional<RunOptions> options;
  int exitCode = 0;
};
CommandLine ParseCommandLine(int argc, const char* const* argv);

}  // namespace MCBin
