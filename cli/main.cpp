#include "cli/commandline.h"
#include "cli/exitguard.h"
#include "cli/interrupt.h"

int main(int argc, char** argv) {
  const MCBin::CommandLine commandLine = MCBin::ParseCommandLine(argc, argv);
  if (!commandLine.action) return commandLine.exitCode;
  MCBin::Interrupt::Install();
  return MCBin::RunGuarded(commandLine.action);
}
