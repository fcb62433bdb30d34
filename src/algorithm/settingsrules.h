#pragma once

#include <ostream>
#include <string>

namespace MCBinning {

// What the settings of both algorithms share.

constexpr int kFewestBins = 2;

// The rule of every checked setter: store an accepted value, keep the old one otherwise.
template <typename Value>
bool StoreIf(bool accepted, Value value, Value& field) {
  if (accepted) field = value;
  return accepted;
}

// The directory part of a temporary file's name, without a trailing "/": "./" when the name
// has no "/" or only a leading one.
std::string DirectoryOfTempName(const std::string& name);

// Where temporary files go unless the host says otherwise: the C library's directory.
std::string DefaultTempDirectory();

void DisplaySkippedReports(std::ostream& os, int attributeReports, int casesReports);

}  // namespace MCBinning
