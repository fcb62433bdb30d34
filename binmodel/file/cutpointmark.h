#pragma once

#include <string>
#include <vector>

namespace MCBinModel {

// What a bin file keeps beside counts, to tell whether the cut points there are those that were
// counted: a checksum (FNV-1a of 64 bits, in hexadecimal digits) of the closed side and of every
// cut point's bits, from the lowest byte up.
std::string MarkCutPoints(const std::vector<double>& cutPoints, bool rightClosed);

// In the mark's place where they are known not to be.
constexpr const char* kMovedCutPoints = "moved";

}  // namespace MCBinModel
