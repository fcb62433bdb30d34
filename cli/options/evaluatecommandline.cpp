#include <memory>
#include <string>

#include "cli/commands/commands.h"
#include "cli/options/commandline.h"
#include "cli/options/commandoptions.h"

namespace MCBin {

namespace {

constexpr const char* kHelp =
    "Counts the bins of a bin file on other data and compares.\n"
    "  mcbin evaluate bins.json validation.csv\n"
    "  mcbin evaluate --target churn --weight w bins.json next-month.csv\n";

constexpr const char* kFooter =
    "Cut points are taken as they are, nothing is binned anew. See docs/statistics.md for the\n"
    "measures; below 0.1 the stability index usually means that little moved.\n"
    "Exit codes: 0 done, 1 input refused or run failed, 2 wrong usage, 130 cancelled.";

struct RawOptions {
  EvaluateOptions evaluate;
  RawReading reading;
};

EvaluateOptions Finish(RawOptions raw) {
  ParseReading(raw.reading, raw.evaluate);
  return raw.evaluate;
}

}  // namespace

void AddEvaluateCommand(CLI::App& app, CommandAction& action) {
  const auto raw = std::make_shared<RawOptions>();
  EvaluateOptions& evaluate = raw->evaluate;
  CLI::App& command = *app.add_subcommand("evaluate", kHelp);
  AddBinsAndData(command, evaluate);
  CLI::Option* const weight =
      command.add_option("--weight", evaluate.weight, "column of weights (as in the bin file)")
          ->type_name("NAME");
  command.add_flag("--unweighted", evaluate.unweighted, "count every record once")
      ->excludes(weight);
  AddEvidenceOfBins(command, evaluate.evidence);
  AddClasses(command, evaluate.evidence);
  AddReading(command, raw->reading, evaluate);
  command.footer(kFooter);
  command.callback(
      [raw, &action] { action = [options = Finish(*raw)] { return EvaluateCommand(options); }; });
}

}  // namespace MCBin
