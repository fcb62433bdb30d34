#include <memory>

#include "cli/commands/commands.h"
#include "cli/options/commandline.h"
#include "cli/options/commandoptions.h"

namespace MCBin {

namespace {

constexpr const char* kHelp =
    "Shows the bins of a bin file as an HTML page with charts.\n"
    "  mcbin report bins.json -o report.html\n"
    "  mcbin report --woe-adjust 0.5 bins.json > report.html\n";

constexpr const char* kFooter =
    "A bin that lacks a class has an infinite weight of evidence unless --woe-adjust is given,\n"
    "here or when the bins were made.\n"
    "The page is one file without scripts, for the screen and for paper. 'mcbin supervised' and\n"
    "'mcbin equal-frequency' write it too, with --report FILE.\n"
    "Exit codes: 0 done, 1 input refused or run failed, 2 wrong usage, 130 cancelled.";

}  // namespace

void AddReportCommand(CLI::App& app, CommandAction& action) {
  const auto report = std::make_shared<ReportOptions>();
  CLI::App& command = *app.add_subcommand("report", kHelp);
  AddBinFile(command, report->binFile);
  command.add_option("-o,--output", report->output, "the page; '-' or none: stdout")
      ->type_name("FILE");
  AddEvidenceOfBins(command, report->evidence);
  AddClasses(command, report->evidence);
  command.footer(kFooter);
  command.callback(
      [report, &action] { action = [options = *report] { return ReportCommand(options); }; });
}

}  // namespace MCBin
