#pragma once

namespace MCBin {

// How the tool ends.
constexpr int kExitDone = 0;
constexpr int kExitFailed = 1;    // input refused or run failed
constexpr int kExitUsage = 2;     // wrong usage
constexpr int kExitWarnings = 3;  // --strict, and a result has a warning or an error
constexpr int kExitCancelled = 130;

}  // namespace MCBin
