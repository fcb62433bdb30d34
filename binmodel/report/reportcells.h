#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <vector>

#include "binmodel/model/binmodel.h"

namespace MCBinModel {

// What reports have in common: widths of texts in tables for a terminal, cells, the order of
// results.

constexpr std::size_t kNameWidth = 32;        // of an attribute or a target
constexpr std::size_t kLabelWidth = 16;       // of a class
constexpr std::size_t kMostClassColumns = 6;  // a target with more classes has no column for each

// A measure with four decimals; "-" when it does not exist.
std::string MeasureCell(const std::optional<double>& measure);

// "ok", or such as "warning: no cut point separates the classes (120017)", also in HTML.
std::string StatusCell(const MCBinning::MCStatus& status);

// Indexes of the results: the largest information gain first, those without a gain last, otherwise
// in the order of the results.
std::vector<std::size_t> OrderByGain(const std::vector<AttributeBins>& results);

}  // namespace MCBinModel
