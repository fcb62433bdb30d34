#include "memoryuse.h"

#include <cstdint>
#include <cstdio>
#include <fstream>
#include <limits>
#include <memory>
#include <stdexcept>

#include "librarycalls.h"
#include "toolrun.h"

namespace bench {

namespace {

// Pure noise, made record by record.
class NoiseRecords : public MCCommon::RecordIterator {
 public:
  NoiseRecords(std::size_t caseCount, int attributeCount, int classCount)
      : fRecord(static_cast<std::size_t>(attributeCount) + 1),
        fCasesLeft(caseCount),
        fClassCount(static_cast<std::uint64_t>(classCount)) {}

  bool HasMore() override { return fCasesLeft > 0; }

  const MCCommon::Record* Next() override {
    --fCasesLeft;
    fRecord[0] = static_cast<double>(NextRandom() % fClassCount);
    for (std::size_t i = 1; i < fRecord.Size(); ++i) {
      fRecord[i] = static_cast<double>(NextRandom() >> 11) * 0x1p-53;
    }
    return &fRecord;
  }

 private:
  // Marsaglia's xorshift64*.
  std::uint64_t NextRandom() {
    fState ^= fState >> 12;
    fState ^= fState << 25;
    fState ^= fState >> 27;
    return fState * 0x2545F4914F6CDD1DU;
  }

  MCCommon::Record fRecord;
  std::size_t fCasesLeft;
  std::uint64_t fClassCount;
  std::uint64_t fState = 88172645463325252U;
};

// The largest resident size that this process has had, in bytes.
std::size_t PeakMemory() {
  std::ifstream status("/proc/self/status");
  std::string word;
  while (status >> word && word != "VmHWM:") {
    status.ignore(std::numeric_limits<std::streamsize>::max(), '\n');
  }
  std::size_t kibibytes = 0;
  if (!(status >> kibibytes)) throw std::runtime_error("/proc/self/status tells no VmHWM");
  return kibibytes * 1024;
}

}  // namespace

std::size_t PeakMemoryOfRun(std::size_t caseCount, int attributeCount, int classCount,
                            const std::string& directory) {
  Columns description;
  description.attributes.resize(static_cast<std::size_t>(attributeCount));
  description.classCount = classCount;
  NoiseRecords records(caseCount, attributeCount, classCount);
  RunSupervised(records, DescribeColumns(description), directory, RunOptions());
  return PeakMemory();
}

std::size_t PeakMemoryInChild(std::size_t caseCount, int attributeCount, int classCount,
                              const std::string& directory) {
  const std::string answer = directory + "/peak";
  RunProgram({"/proc/self/exe", kMemoryChildOption, std::to_string(caseCount),
              std::to_string(attributeCount), std::to_string(classCount), directory},
             answer);
  std::size_t bytes = 0;
  std::ifstream file(answer);
  if (!(file >> bytes)) throw std::runtime_error("the measuring process gives no answer");
  return bytes;
}

}  // namespace bench
