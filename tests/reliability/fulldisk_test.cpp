// Files that stop growing at any byte, as on a full disk: bins are right, or a status says that
// there are none.

#include <gtest/gtest.h>
#include <signal.h>
#include <sys/resource.h>

#include <string>

#include "support/agreement.h"
#include "support/tempdir.h"
#include "support/wholerun.h"

namespace {

constexpr int kRecords = 10007;  // written in two goes
constexpr rlim_t kFileBytes = kRecords * sizeof(double);

// No file of this process gets larger while the object lives.
class LargestFile {
 public:
  explicit LargestFile(rlim_t bytes) : fHandler(signal(SIGXFSZ, SIG_IGN)) {
    getrlimit(RLIMIT_FSIZE, &fOld);
    const rlimit limit{bytes, fOld.rlim_max};
    setrlimit(RLIMIT_FSIZE, &limit);
  }
  ~LargestFile() {
    setrlimit(RLIMIT_FSIZE, &fOld);
    signal(SIGXFSZ, fHandler);
  }
  LargestFile(const LargestFile&) = delete;
  LargestFile& operator=(const LargestFile&) = delete;

 private:
  void (*fHandler)(int);
  rlimit fOld{};
};

class FullDisk : public testing::TestWithParam<Driver> {};

TEST_P(FullDisk, GivesNoWrongBins) {
  const TempDir directory;
  const Scenario scenario = MixedScenario(kRecords);
  BINVarList variables = scenario.VarList();
  MCCommon::InMemoryRecordIterator records = scenario.Records();
  // All that a run says; with `bytes` as the size of the largest file.
  const auto textOfRun = [&](rlim_t bytes) {
    WholeRun run(GetParam(), scenario.options, variables, directory.Path());
    records.Rewind();
    const LargestFile limit(bytes);
    const std::string status = Text(run.CreateBins(records));
    return status + '\n' + run.Text();
  };
  const std::string expected = textOfRun(RLIM_INFINITY);
  // Each result of a run, or the whole run, is an error.
  const auto isRefused = [](const std::string& text) {
    std::size_t results = 0;
    std::size_t refused = 0;
    for (const char c : text) results += c == '\n' ? 1 : 0;
    for (std::size_t at = 0;
         (at = text.find(": 120021/-1[0 0 0], distinct values 0,", at)) != std::string::npos;
         ++at) {
      ++refused;
    }
    return text == "120021/-1[0 0 0]\n" || refused + 1 == results;
  };

  for (const rlim_t bytes :
       {rlim_t{0}, rlim_t{1}, rlim_t{8}, rlim_t{4096}, rlim_t{79999}, rlim_t{80000}, rlim_t{80001},
        rlim_t{80008}, kFileBytes - 8, kFileBytes - 1, kFileBytes, kFileBytes + 1}) {
    const std::string text = textOfRun(bytes);
    EXPECT_TRUE(bytes >= kFileBytes ? text == expected : isRefused(text)) << bytes << '\n' << text;
    EXPECT_EQ(directory.FileCount(), 0u) << bytes;
  }
}

INSTANTIATE_TEST_SUITE_P(Drivers, FullDisk, testing::ValuesIn(kDrivers),
                         testing::PrintToStringParamName());

}  // namespace
