#pragma once

#include <sys/types.h>

#include <string>
#include <vector>

#include "support/tempdir.h"

// Runs the built `mcbin` in a directory of its own, which is also where its temporary
// files go, and tells what it did. From there, `examples` and `data` lead to the data sets.
//
// A command is what follows `mcbin`; blanks part its words, '' is an empty one, and
// nothing else is quoted.
class Program {
 public:
  Program();

  struct Outcome {
    int exitCode;
    std::string out;
    std::string err;
  };

  // Writes a file into the directory, for the program to read.
  void Write(const std::string& name, const std::string& content) const;

  // The content of a file in the directory.
  std::string Read(const std::string& name) const;

  // What surrounds a run. Paths count from the directory.
  struct Setting {
    std::string input = {};   // standard input instead of a text
    std::string output = {};  // standard output, appended to; empty: captured
  };

  // Runs the command; standard input is `input`.
  Outcome Run(const std::string& command, const std::string& input = "") const;
  Outcome Run(const std::string& command, const Setting& setting) const;

  // The names of all files in the directory, hidden ones included, in order; without the two
  // ways to the data sets.
  std::vector<std::string> Files() const;

 private:
  pid_t Start(const std::string& command, int input, const Setting& setting) const;
  Outcome Wait(pid_t process) const;

  TempDir fDirectory;
  TempDir fOutputs;
};
