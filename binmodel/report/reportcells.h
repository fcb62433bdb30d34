#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <vector>

#include "common/mcstatus.h"

namespace MCBinModel {

// What all reports for a terminal write alike.

constexpr std::size_t kNameWidth = 32;        // of an attribute or a target
constexpr std::size_t kLabelWidth = 16;       // of a class
constexpr std::size_t kMostClassColumns = 6;  // a target with more classes has no column for each

// A measure with four decimals; "-" when it does not exist.
std::string MeasureCell(const std::optional<double>& measure);

// "ok", or such as "warning: no cut point separates the classes (120017)", also in HTML.
std::string StatusCell(const MCBinning::MCStatus& status);

}  // namespace MCBinModel
