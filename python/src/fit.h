#pragma once

#include <mcbinmodel/model/binmodel.h>
#include <mcbinmodel/model/missingdefinition.h>
#include <nanobind/nanobind.h>

#include <cstddef>
#include <map>
#include <optional>
#include <set>
#include <string>
#include <utility>
#include <vector>

#include "table.h"

namespace MCBinPython {

// What a run makes of the columns of a table, by their index.
struct FitColumns {
  std::vector<std::size_t> attributes;
  std::vector<std::size_t> targets;
  std::optional<std::size_t> weight;
  std::set<std::size_t> categorical;  // attributes whose numbers are categories
  std::map<std::size_t, MCBinModel::MissingDefinition> missing;
};

// How the run works.
struct FitControl {
  bool truncatesWeights = false;
  std::vector<std::string> events;  // classes of targets
  int threads = 1;
  std::string tempDir;
  nanobind::handle progress;
};

// A run of the library of bins over the table, without the interpreter's lock. Answers the model
// and the results that were counted anew.
std::pair<MCBinModel::BinModel, std::vector<std::size_t>> Fit(
    const Table& table, const MCBinModel::BinSettings& settings, const FitColumns& columns,
    const FitControl& control);

}  // namespace MCBinPython
