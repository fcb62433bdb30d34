#include "cli/options/commandline.h"
#include "cli/terminal/exitguard.h"
#include "io/interrupt.h"

int main(int argc, char** argv) {
  const MCBin::CommandLine commandLine = MCBin::ParseCommandLine(argc, argv);
  if (!commandLine.action) return commandLine.exitCode;
  MCBin::Interrupt::Install();
  return MCBin::RunGuarded(commandLine.action);
}
