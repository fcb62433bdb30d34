#pragma once

#include <sys/types.h>

#include <string>
#include <vector>

#include "support/tempdir.h"

// Runs the built `mcbin` in a directory of its own, which is also where its temporary
// files go, and tells what it did.
class Program {
 public:
  struct Outcome {
    int exitCode;
    std::string out;
    std::string err;
  };

  // Writes a file into the directory, for the program to read.
  void Write(const std::string& name, const std::string& content) const;

  // Makes a directory elsewhere reachable from it.
  void Link(const std::string& name, const std::string& target) const;

  // The content of a file in the directory.
  std::string Read(const std::string& name) const;

  // Runs it with these arguments; standard input is `input`.
  Outcome Run(const std::vector<std::string>& arguments, const std::string& input = "") const;

  // The same, but standard input stays open and, once the program waits for more of it,
  // the signal is sent.
  Outcome RunAndSignal(const std::vector<std::string>& arguments, int signal) const;

  // The names of all files in the directory, hidden ones included, in order.
  std::vector<std::string> Files() const;

 private:
  pid_t Start(const std::vector<std::string>& arguments, int input) const;
  Outcome Wait(pid_t process) const;

  TempDir fDirectory;
  TempDir fOutputs;
};
