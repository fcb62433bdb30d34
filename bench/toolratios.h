#pragma once

#include <cstddef>
#include <string>

namespace bench {

// Runs of mcbin: a line each, named `work`.

// The whole run against reading the file and converting its numbers; of several jobs in wall time,
// and against one job, too.
void CompareTool(const std::string& work, int jobs);

// Two jobs against one, in wall time, of the part that jobs share.
void CompareJobs(const std::string& work, std::size_t rowCount, int attributeCount);

}  // namespace bench
