#pragma once

#include "../common/export.h"
#include "../common/runreport.h"

class IBINAlgorithm;
class IEFBINAlgorithm;

namespace MCBinning {

// The report of an algorithm's last run, or of the one that is under way: a listener or query may
// look at it. Lives as long as the algorithm and belongs to the thread that runs it. For an object
// that no factory made it says that nothing was run.
MCBINNING_API const RunReport& GetRunReport(const IBINAlgorithm& algorithm);
MCBINNING_API const RunReport& GetRunReport(const IEFBINAlgorithm& algorithm);

}  // namespace MCBinning
