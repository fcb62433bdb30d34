#pragma once

#include <string>
#include <vector>

#include "common/mcstatus.h"
#include "support/reference.h"

// Texts for messages and comparisons: the same when every bit is, with any NaN as good as any
// other.

// "code/severity[data]".
std::string Text(const MCBinning::MCStatus& status);
std::string Text(const reference::Status& status);
std::string Text(const std::vector<double>& values);

// All that was made of an attribute, but for its cases one by one; begins with the status.
std::string Text(const reference::Binning& binning);

// In the reference's form.
reference::Status PlainForm(const MCBinning::MCStatus& status);
