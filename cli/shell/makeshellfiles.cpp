// Writes the completion files and the manual page of mcbin into the directory given.

#include <fstream>
#include <iostream>
#include <string>

#include "cli/options/commandline.h"
#include "cli/shell/shellfiles.h"

// What is thrown ends the build.
int main(int argc, char** argv) {  // NOLINT(bugprone-exception-escape)
  if (argc != 2) {
    std::cerr << "usage: mcbin_shellfiles DIRECTORY\n";
    return 2;
  }
  CLI::App app;
  MCBin::CommandAction action;
  MCBin::AddCommands(app, action);
  bool written = true;
  const auto write = [&](const std::string& name, const std::string& content) {
    std::ofstream file(std::string(argv[1]) + "/" + name, std::ios::binary);
    written = written && (file << content).flush().good();
  };
  write("mcbin", MCBin::WriteBashCompletion(app));
  write("_mcbin", MCBin::WriteZshCompletion(app));
  write("mcbin.fish", MCBin::WriteFishCompletion(app));
  write("mcbin.1", MCBin::WriteManual(app));
  if (!written) std::cerr << "cannot write to " << argv[1] << "\n";
  return written ? 0 : 1;
}
