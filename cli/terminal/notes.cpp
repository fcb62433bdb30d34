#include "cli/terminal/notes.h"

#include <fmt/format.h>
#include <fmt/ranges.h>

#include <cstdio>

#include "binmodel/text/displaytext.h"

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

std::string NameResults(const MCBinModel::BinModel& model,
                        const std::vector<std::size_t>& results) {
  constexpr std::size_t kMostNamed = 10;
  std::vector<std::string> names;
  for (const std::size_t result : results) {
    if (names.size() == kMostNamed) break;
    const MCBinModel::AttributeBins& bins = model.results[result];
    names.push_back(MCBinModel::QuotedText(model.GetAttribute(bins).name));
    if (model.targets.size() < 2) continue;
    names.back() += " by " + MCBinModel::QuotedText(model.GetTarget(bins)->name);
  }
  return fmt::format("{}{}", fmt::join(names, ", "),
                     results.size() > names.size() ? " and more" : "");
}

}  // namespace MCBin
