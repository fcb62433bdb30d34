// Many algorithm objects at once, in one process and in several, in one temporary directory.

#include <gtest/gtest.h>
#include <sys/wait.h>
#include <unistd.h>

#include <atomic>
#include <string>
#include <thread>
#include <vector>

#include "common/missing.h"
#include "support/scenario.h"
#include "support/tempdir.h"
#include "support/wholerun.h"

namespace {

constexpr int kSides = 8;
constexpr int kRunsPerSide = 25;
constexpr int kRecords = 10050;  // more than are written at once

class SideBySide : public testing::TestWithParam<Driver> {
 protected:
  SideBySide() { expected = RunOnce(); }

  std::string RunOnce() {
    BINVarList variables = scenario.VarList();
    WholeRun run(GetParam(), scenario.options, variables, directory.Path());
    MCCommon::InMemoryRecordIterator mine = records;
    run.CreateBins(mine);
    return run.Text();
  }

  // How many runs gave something else.
  int RunMany() {
    int differing = 0;
    for (int i = 0; i < kRunsPerSide; ++i) {
      if (RunOnce() != expected) ++differing;
    }
    return differing;
  }

  TempDir directory;
  const Scenario scenario = MixedScenario(kRecords);
  const MCCommon::InMemoryRecordIterator records = scenario.Records();
  std::string expected;
};

TEST_P(SideBySide, ThreadsAllComputeTheSame) {
  EXPECT_NE(expected.find("0/0"), std::string::npos) << "some bins are expected:\n" << expected;
  std::vector<int> differing(kSides);
  {
    std::vector<std::jthread> threads;
    for (int& count : differing) threads.emplace_back([&] { count = RunMany(); });
  }
  EXPECT_EQ(differing, std::vector<int>(kSides));
  EXPECT_EQ(directory.FileCount(), 0u);
}

TEST_P(SideBySide, ProcessesAllComputeTheSame) {
  std::vector<pid_t> processes;
  for (int i = 0; i < kSides; ++i) {
    processes.push_back(fork());
    if (processes.back() == 0) _exit(RunMany());
  }
  for (const pid_t process : processes) {
    int status = -1;
    EXPECT_EQ(waitpid(process, &status, 0), process);
    EXPECT_EQ(status, 0);
  }
  EXPECT_EQ(directory.FileCount(), 0u);
}

// Records without end.
class EndlessIterator : public MCCommon::RecordIterator {
 public:
  explicit EndlessIterator(std::size_t width) : fRecord(width) {
    for (std::size_t i = 0; i < width; ++i) fRecord[i] = 1.0;
  }
  bool HasMore() override { return true; }
  const MCCommon::Record* Next() override {
    isRead = true;
    isRead.notify_one();
    return &fRecord;
  }

  std::atomic<bool> isRead = false;

 private:
  MCCommon::Record fRecord;
};

TEST_P(SideBySide, CancelOfAnotherThreadEndsTheRun) {
  BINVarList variables = scenario.VarList();
  {
    WholeRun run(GetParam(), scenario.options, variables, directory.Path());
    EndlessIterator endless(scenario.variables.size());
    const std::jthread other([&] {
      endless.isRead.wait(false);
      run.Cancel();
    });
    EXPECT_EQ(run.CreateBins(endless).GetErrorCode(), 1);
  }
  EXPECT_EQ(directory.FileCount(), 0u);
}

INSTANTIATE_TEST_SUITE_P(Drivers, SideBySide, testing::ValuesIn(kDrivers),
                         testing::PrintToStringParamName());

}  // namespace
