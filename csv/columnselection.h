#pragma once

#include <optional>
#include <string>
#include <vector>

#include "csv/columnnames.h"
#include "csv/columnnote.h"
#include "csv/columnrequest.h"

namespace MCBin {

// Which columns of a file a run is to read, by name, and as what.
struct ColumnChoice {
  std::vector<std::string> targets;
  std::optional<std::string> weight;
  // A name of these that no column has may be a pattern, with * for any text and ? for a character.
  std::vector<std::string> attributes;  // empty: every column that is left and can be binned
  std::vector<std::string> exclude;     // no attributes
  std::vector<std::string> categorical;
  std::vector<std::string> continuous;
  std::vector<MissingRequest> missing;
};

// The columns that a run reads: targets in the order given, the weight, then attributes
// (in the order given, or in file order when none were named). `notes` gets one for each
// description that has no effect.
//
// Throws Refusal for a name that is not in the file, and when the choice contradicts itself (a
// column in two roles, a continuous target).
std::vector<ColumnRequest> SelectColumns(const ColumnNames& names, const ColumnChoice& choice,
                                         std::vector<ColumnNote>& notes);

}  // namespace MCBin
