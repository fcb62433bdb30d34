#pragma once

#include <string>

#include "binmodel/model/binmodel.h"

namespace MCBinModel {

// What a bin file says it is, and the version of its format, which docs/bin-file.md describes.
constexpr const char* kBinFileFormat = "mcbin-bins";
constexpr int kBinFileVersion = 1;

// The text of the bin file: one JSON object.
std::string WriteBinFile(const BinModel& model);

}  // namespace MCBinModel
