#pragma once

#include <cstddef>
#include <string>

namespace bench {

// A supervised run without pre-bins over records that are made on the way, so that the memory
// of this process is the run's own. To be called in a fresh process; returns the peak of its
// resident memory in bytes.
std::size_t PeakMemoryOfRun(std::size_t caseCount, int attributeCount, int classCount,
                            const std::string& directory);

// The same measured in a child process: this program started again with these arguments.
std::size_t PeakMemoryInChild(std::size_t caseCount, int attributeCount, int classCount,
                              const std::string& directory);

// The option that tells the child what it is; followed by the four arguments above.
inline constexpr const char* kMemoryChildOption = "--memory-child";

}  // namespace bench
