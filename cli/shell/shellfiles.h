#pragma once

#include <CLI/CLI.hpp>
#include <string>

namespace MCBin {

// The files that a shell reads, made from the commands and options of `app`, so that they
// cannot miss one. `app` is that of AddCommands().

std::string WriteBashCompletion(const CLI::App& app);
std::string WriteZshCompletion(const CLI::App& app);
std::string WriteFishCompletion(const CLI::App& app);

// The manual page, in troff with man macros.
std::string WriteManual(const CLI::App& app);

}  // namespace MCBin
