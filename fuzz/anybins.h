#pragma once

#include <string_view>

// Does with bins all that can be done: counts, reports, exports.
//
// `input` is a byte of options, a bin file, a NUL byte and a CSV file. False when the bin file is
// refused; throws NotSo (require.h) when
//
//   - a bin that `apply` gives is not one that `evaluate` counts, or a record is lost,
//   - a report or an export is not well-formed, or a report holds control characters.
bool TryBins(std::string_view input);
