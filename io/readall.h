#pragma once

#include <string>

namespace MCBin {

// A whole file, and its name for messages.
struct InputText {
  std::string name;
  std::string text;
};

// Reads all of a file that is small beside the memory; "-" is standard input. `first` is what
// its first character must be, blanks and a byte-order mark left aside: another file, however
// large, is refused at once. `expected` says what the file should be.
//
// Throws Refusal, also for a file of more than 256 MiB, and Interrupt::Requested.
InputText ReadAll(const std::string& path, char first, const char* expected);

}  // namespace MCBin
