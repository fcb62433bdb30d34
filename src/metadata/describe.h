#pragma once

#include <string>

#include "../common/export.h"
#include "../common/mcstatus.h"

class BINVarList;

namespace MCBinning {

// A status in words: "ok", or a phrase such as "no cut point separates the classes"; "unknown
// status" for a code that is not in docs/status-codes.md. Throws std::bad_alloc.
MCBINNING_API std::string Describe(const MCStatus& status);

// The same with the variable that the status names, as it is called in `variables`, and with what
// to do about it: "the target cannot be used: declare enough categories before the algorithm is
// made". Throws std::bad_alloc.
MCBINNING_API std::string Describe(const MCStatus& status, const BINVarList& variables);

}  // namespace MCBinning
