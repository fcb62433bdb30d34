#pragma once

#include <functional>

namespace MCBin {

// How the tool ends.
constexpr int kExitDone = 0;
constexpr int kExitFailed = 1;    // input refused or run failed
constexpr int kExitUsage = 2;     // wrong usage
constexpr int kExitWarnings = 3;  // --strict, and a result has a warning or an error
constexpr int kExitCancelled = 130;

// What a parsed command line asks for: runs the command and returns the exit code.
using CommandAction = std::function<int()>;

// Runs a command. What it throws becomes a message on standard error and an exit code.
int RunGuarded(const CommandAction& action);

}  // namespace MCBin
