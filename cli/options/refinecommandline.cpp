#include <memory>
#include <string>
#include <vector>

#include "cli/commands/commands.h"
#include "cli/options/commandline.h"
#include "cli/options/commandoptions.h"
#include "cli/options/refineoptions.h"
#include "cli/terminal/usageerror.h"

namespace MCBin {

namespace {

constexpr const char* kHelp =
    "Joins neighbouring bins of a bin file, to the best bins of the kind asked for.\n"
    "  mcbin refine --max-bins 5 --monotonic either --json refined.json bins.json\n"
    "  mcbin refine --min-share 0.05 --breaks age=30,45 --json refined.json bins.json\n";

constexpr const char* kFooter =
    "Of all ways to join bins, the one that keeps the most information. The data are not needed.\n"
    "When one attribute cannot have such bins nothing is written; see --attributes.\n"
    "Exit codes: 0 done, 1 input refused or no such bins, 2 wrong usage,\n"
    "3 with --strict when a result has a warning or an error, 130 cancelled.";

struct RawOptions {
  RefineOptions refine;
  RawTables output;
  RawRefinement refinement;
  std::vector<std::string> attributes;
};

RefineOptions Finish(RawOptions raw) {
  ParseTables(raw.output, raw.refine.tables);
  const auto settings = ParseRefinement(raw.refinement);
  if (!settings) {
    throw UsageError("refine: say what the bins are to be, for example --max-bins 5");
  }
  raw.refine.settings = *settings;
  raw.refine.settings.attributes = JoinLists(raw.attributes);
  return raw.refine;
}

}  // namespace

void AddRefineCommand(CLI::App& app, CommandAction& action) {
  const auto raw = std::make_shared<RawOptions>();
  CLI::App& command = *app.add_subcommand("refine", kHelp);
  AddBinFile(command, raw->refine.binFile);
  AddList(command, "--attributes", raw->attributes, "NAMES",
          "whose bins to refine; the others stay as they are (all)");
  AddModelOutput(command, "-o,--json", raw->output, raw->refine);
  {
    const OptionGroup group(command, "Classes");
    AddEvidenceOfBins(command, raw->refine.evidence);
    AddClasses(command, raw->refine.evidence);
  }
  AddRefinement(command, raw->refinement);
  command.footer(kFooter);
  command.callback(
      [raw, &action] { action = [options = Finish(*raw)] { return RefineCommand(options); }; });
}

}  // namespace MCBin
