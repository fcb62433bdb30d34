#include "cli/commandline.h"
#include "cli/interrupt.h"
#include "cli/runcommand.h"

int main(int argc, char** argv) {
  const MCBin::CommandLine commandLine = MCBin::ParseCommandLine(argc, argv);
  if (!commandLine.options) return commandLine.exitCode;
  MCBin::Interrupt::Install();
  return MCBin::RunCommand(*commandLine.options);
}
