#pragma once

#include <CLI/CLI.hpp>
#include <optional>
#include <string>
#include <vector>

#include "cli/options/applyoptions.h"

namespace MCBin {

// What the subcommands' options have in common.

// An option that may be repeated and takes one text each time.
void AddList(CLI::App& command, const std::string& flag, std::vector<std::string>& values,
             const std::string& typeName, const std::string& help);

void AddChoice(CLI::App& command, const std::string& flag, std::string& value,
               const std::vector<std::string>& choices, const std::string& help);

// A number from `least` to `most`; NaN is refused.
void AddNumber(CLI::App& command, const std::string& flag, double& value, double least, double most,
               const std::string& typeName, const std::string& help);

// The file that a command reads: a bin file, or a CSV file.
void AddBinFile(CLI::App& command, std::string& path);
void AddCsvFile(CLI::App& command, std::string& path);

// --target of a command that reads a bin file.
void AddTargetOfBins(CLI::App& command, std::optional<std::string>& target);

// --as, and what its value means.
void AddBinForm(CLI::App& command, std::string& form);
MCBinModel::BinForm ParseBinForm(const std::string& form);

// --na and --delimiter of a command that takes both from a bin file otherwise.
void AddMissingTexts(CLI::App& command, std::vector<std::string>& texts);
void AddDelimiter(CLI::App& command, std::string& delimiter);

// The option's value as a character. Throws UsageError.
char ParseDelimiter(const std::string& text);

// The names of all lists, in order. Throws UsageError.
std::vector<std::string> JoinLists(const std::vector<std::string>& lists);

// The same for --na. A quoted empty item keeps its quotes: it stands for a quoted empty field.
std::vector<std::string> JoinMissingTexts(const std::vector<std::string>& lists);

}  // namespace MCBin
