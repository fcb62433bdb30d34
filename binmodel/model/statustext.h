#pragma once

#include <string>

#include "common/mcstatus.h"

namespace MCBinModel {

// A status in words: "ok", or a phrase such as "no cut point separates the classes".
std::string DescribeStatus(const MCBinning::MCStatus& status);

// "ok", "warning" or "error".
const char* DescribeSeverity(const MCBinning::MCStatus& status);

}  // namespace MCBinModel
