#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace MCBinModel {

// Dates and times as ISO 8601 writes them, and as numbers: seconds since 1970-01-01T00:00:00Z,
// without leap seconds.
//
//   2024-01-31, which is its midnight
//   2024-01-31T12:30, 2024-01-31T12:30:00, 2024-01-31 12:30:00.25
//   2024-01-31T12:30:00Z, 2024-01-31T12:30:00+01:00, also +0100 and +01
//
// What has no zone is taken as UTC. Years have four digits. Doubles tell microseconds apart until
// the year 2242.

// The seconds, as the nearest double; nothing for another text and for a day or time that no
// calendar or clock has. Blanks around it are of no account.
std::optional<double> ParseTime(std::string_view text);

// The shortest text that reads back as the same double: a day alone for a midnight. A number that
// is no time of the years 0 to 9999, or takes more than 16 decimals, is written as it is.
std::string FormatTime(double seconds);

// The same down to microseconds, with a blank and the time of day always, as databases want it.
// Between two microseconds it is the earlier or, with `up`, the later; nothing beyond the years 1
// to 9999.
std::optional<std::string> FormatMicroseconds(double seconds, bool up);

}  // namespace MCBinModel
