#pragma once

#include <cstddef>
#include <string>

namespace bench {

// Runs of mcbin: a line each, named `work`.

// Against reading the file and converting its numbers.
void CompareTool(const std::string& work);

// Two jobs against one, in wall time, of the part that jobs share.
void CompareJobs(const std::string& work, std::size_t rowCount, int attributeCount);

}  // namespace bench
