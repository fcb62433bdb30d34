#pragma once

#include <string>
#include <vector>

namespace bench {

// Runs a program to its end, its standard output in a file, its standard error dropped.
// Throws std::runtime_error when it cannot be started or fails.
void RunProgram(const std::vector<std::string>& arguments, const std::string& outputFile);

// Runs a program that makes temporary files in `directory` as RunProgram() does. Returns the wall
// seconds from its first file of values there to its end.
double RunFromFirstFile(const std::vector<std::string>& arguments, const std::string& directory);

// The command-line tool that was built beside this program; "" when there is none.
std::string FindTool();

}  // namespace bench
