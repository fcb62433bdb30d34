#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace MCBin {

// What the tool says on standard error, one line each, in its name. That nobody can be told (a
// full disk, a closed descriptor) ends no run.
void PrintNote(std::string_view note);
void PrintNotes(const std::vector<std::string>& notes);

}  // namespace MCBin
