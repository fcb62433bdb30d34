#pragma once

#include <string>

#include "binmodel/model/refusal.h"
#include "csv/columnnote.h"

namespace MCBin {

// What the tool says of a refusal: its own sentence where an option is part of the advice.
std::string RefusalText(const MCBinModel::Refusal& refusal);

// The same of a note.
std::string NoteText(const ColumnNote& note);

// Whether the options are to blame, as for a UsageError.
bool IsUsageRefusal(MCBinModel::RefusalCode code);

}  // namespace MCBin
