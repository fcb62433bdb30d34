#pragma once

#include <string>

#include "binmodel/model/binmodel.h"

namespace MCBin {

// Reads a bin file; "-" is standard input. Throws Refusal and Interrupt::Requested.
MCBinModel::BinModel LoadBinFile(const std::string& path);

}  // namespace MCBin
