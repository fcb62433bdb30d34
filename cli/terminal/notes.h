#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "binmodel/model/binsource.h"

namespace MCBin {

// What the tool says on standard error, one line each, in its name. That nobody can be told (a
// full disk, a closed descriptor) ends no run.
void PrintNote(std::string_view note);
void PrintNotes(const std::vector<std::string>& notes);

// The part of a note that says why records were dropped.
std::string DroppedText(const MCBinModel::DroppedRecords& dropped);

}  // namespace MCBin
