#pragma once

#include <string>
#include <vector>

#include "common/mcstatus.h"
#include "output/binattributeresults.h"
#include "output/binattributetargetresults.h"
#include "support/reference.h"

// "code/severity[data]", for messages and comparisons.
std::string Text(const MCBinning::MCStatus& status);
std::string Text(const reference::Status& status);

// Whether two lists hold the same bits; any NaN is as good as any other.
bool SameBits(const std::vector<double>& a, const std::vector<double>& b);

// What differs between the reference and a stored result, one line per field; empty when
// they agree bit by bit.
std::string Differences(const reference::Binning& expected,
                        const BINAttributeTargetResults& actual);
std::string Differences(const reference::Binning& expected, const BINAttributeResults& actual);
