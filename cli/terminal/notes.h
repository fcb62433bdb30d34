#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

#include "binmodel/model/binmodel.h"
#include "binmodel/model/binsource.h"

namespace MCBin {

// What the tool says on standard error, one line each, in its name. That nobody can be told (a
// full disk, a closed descriptor) ends no run.
void PrintNote(std::string_view note);
void PrintNotes(const std::vector<std::string>& notes);

// The part of a note that says why records were dropped.
std::string DroppedText(const MCBinModel::DroppedRecords& dropped);

// These results, by attribute and, where there are several, by target, as a note names them: not
// more than ten.
std::string NameResults(const MCBinModel::BinModel& model, const std::vector<std::size_t>& results);

}  // namespace MCBin
