#pragma once

#include <string>

#include "cli/binmodel.h"

namespace MCBin {

// The version of the bin file's format, which docs/bin-file.md describes.
constexpr int kBinFileVersion = 1;

// The text of the bin file: one JSON object.
std::string WriteBinFile(const BinModel& model);

}  // namespace MCBin
