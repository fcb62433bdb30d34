#include "cli/terminal/notes.h"

#include <fmt/format.h>

#include <cstdio>

namespace MCBin {

void PrintNote(std::string_view note) {
  const std::string line = fmt::format("mcbin: {}\n", note);
  std::fwrite(line.data(), 1, line.size(), stderr);
}

void PrintNotes(const std::vector<std::string>& notes) {
  for (const std::string& note : notes) PrintNote(note);
}

std::string DroppedText(const MCBinModel::DroppedRecords& dropped) {
  return fmt::format("dropped for their weight ({} missing, {} zero, {} rounded to zero)",
                     dropped.missing, dropped.zero, dropped.roundedToZero);
}

}  // namespace MCBin
