#pragma once

#include <optional>
#include <string>
#include <vector>

namespace MCBin {

// A file that a command reads; "-" is standard input.
struct CommandInput {
  std::string what;  // "the bin file"
  std::string path;
};

// One that it writes, when it is asked for; "-" is standard output.
struct CommandOutput {
  std::string option;
  std::optional<std::string> path;
};

// Refuses two inputs from standard input, two outputs in one file, and an output, standard output
// included, over an input. Throws UsageError.
void CheckFiles(const std::vector<CommandInput>& inputs, const std::vector<CommandOutput>& outputs);

}  // namespace MCBin
