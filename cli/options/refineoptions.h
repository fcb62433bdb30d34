#pragma once

#include <CLI/CLI.hpp>
#include <optional>
#include <string>
#include <vector>

#include "binmodel/refine/refinesettings.h"

namespace MCBin {

// The options that say what refined bins are to be, as CLI11 fills them.
struct RawRefinement {
  MCBinModel::RefineSettings settings;
  std::string objective;
  std::string trend;
  std::vector<std::string> breaks;
  std::vector<std::string> keep;
  std::vector<const CLI::Option*> options;  // all of them
};
void AddRefinement(CLI::App& command, RawRefinement& raw);

// Nothing when none of them was given. Throws UsageError.
std::optional<MCBinModel::RefineSettings> ParseRefinement(const RawRefinement& raw);

}  // namespace MCBin
