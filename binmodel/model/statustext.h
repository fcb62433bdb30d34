#pragma once

#include <mcbinning/common/mcstatus.h>

#include <string>

#include "binmodelexport.h"

namespace MCBinModel {

// A status in words: "ok", or a phrase such as "no cut point separates the classes".
MCBINMODEL_API std::string DescribeStatus(const MCBinning::MCStatus& status);

// "ok", "warning" or "error".
MCBINMODEL_API const char* DescribeSeverity(const MCBinning::MCStatus& status);

}  // namespace MCBinModel
