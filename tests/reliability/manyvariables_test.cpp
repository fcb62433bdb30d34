// What tens of thousands of variables cost.

#include <gtest/gtest.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <string>

#include "support/tempdir.h"
#include "support/wholerun.h"

namespace {

// In a child process: the memory that binning so many variables took at its peak, in KiB, or -1.
long PeakOf(Driver driver, int variableCount, const std::string& directory) {
  const pid_t process = fork();
  if (process == 0) {
    BINVarList list;
    list.AddCatVar("t", "", 2, IBINVariable::MeasureNumericCategorical, IBINVariable::RoleTarget);
    for (int i = 1; i < variableCount; ++i) {
      list.AddContVar("v" + std::to_string(i), "", IBINVariable::RoleAttribute);
    }
    MCCommon::InMemoryRecordIterator records;
    for (int record = 0; record < 3; ++record) {
      records.Add(std::vector<double>(static_cast<std::size_t>(variableCount), record / 2));
    }
    reference::Options options;
    options.numberOfBins = 2;
    WholeRun run(driver, options, list, directory);
    _exit(run.CreateBins(records).IsError() ? 1 : 0);
  }
  int status = -1;
  rusage used{};
  wait4(process, &status, 0, &used);
  return WIFEXITED(status) && WEXITSTATUS(status) == 0 ? used.ru_maxrss : -1;
}

class ManyVariables : public testing::TestWithParam<Driver> {};

TEST_P(ManyVariables, TakeMemoryForTheRecordsThereAre) {
#ifdef __SANITIZE_ADDRESS__
  GTEST_SKIP() << "the sanitizers take memory themselves";
#endif
  constexpr int kVariables = 10000;
  constexpr long kKibibytesPerVariable = 10;  // with two lists and three records of them
  const TempDir directory;
  const long few = PeakOf(GetParam(), 10, directory.Path());
  const long many = PeakOf(GetParam(), kVariables, directory.Path());
  ASSERT_GT(few, 0);
  ASSERT_GT(many, few);
  EXPECT_LT(many - few, kVariables * kKibibytesPerVariable);
}

INSTANTIATE_TEST_SUITE_P(Drivers, ManyVariables, testing::ValuesIn(kDrivers),
                         testing::PrintToStringParamName());

}  // namespace
