// Files that cannot grow, a full disk, no descriptors left: bins are right, or a status says
// that there are none.

#include <gtest/gtest.h>
#include <sched.h>
#include <signal.h>
#include <sys/mount.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <functional>
#include <string>
#include <vector>

#include "support/agreement.h"
#include "support/tempdir.h"
#include "support/wholerun.h"

namespace {

constexpr int kRecords = 10007;  // written in two goes
constexpr rlim_t kFileBytes = kRecords * sizeof(double);

// A limit of this process while the object lives.
class Limit {
 public:
  Limit(int resource, rlim_t value) : fResource(resource), fHandler(signal(SIGXFSZ, SIG_IGN)) {
    getrlimit(resource, &fOld);
    const rlimit limit{value, fOld.rlim_max};
    setrlimit(resource, &limit);
  }
  ~Limit() {
    setrlimit(fResource, &fOld);
    signal(SIGXFSZ, fHandler);
  }
  Limit(const Limit&) = delete;
  Limit& operator=(const Limit&) = delete;

 private:
  const int fResource;
  void (*fHandler)(int);
  rlimit fOld{};
};

class FullDisk : public testing::TestWithParam<Driver> {
 protected:
  FullDisk() {
    WholeRun run(GetParam(), scenario.options, variables, directory.Path());
    MCCommon::InMemoryRecordIterator mine = records;
    run.CreateBins(mine);
    expected = run.Text();
    resultCount = run.GetResults().size();
  }

  // What is wrong with a run in `path`; empty when its bins are right, or each of those that
  // are missing is accounted for by 120021. `isRight` tells which.
  std::string FaultOf(const std::string& path, bool& isRight) {
    WholeRun run(GetParam(), scenario.options, variables, path);
    MCCommon::InMemoryRecordIterator mine = records;
    const std::string status = Text(run.CreateBins(mine));
    isRight = status == "0/0[0 0 0]" || status == "120018/1[0 0 0]";
    if (status == "120021/-1[0 0 0]") return {};
    if (!isRight) return "status " + status;
    const std::string text = run.Text();
    if (text == expected) return {};
    isRight = false;
    std::size_t refused = 0;
    for (auto at = text.find(kRefused); at != std::string::npos; at = text.find(kRefused, at + 1)) {
      ++refused;
    }
    return refused == resultCount ? std::string() : "results\n" + text;
  }

  static constexpr const char* kRefused = ": 120021/-1[0 0 0], distinct values 0,";

  TempDir directory;
  const Scenario scenario = MixedScenario(kRecords);
  const MCCommon::InMemoryRecordIterator records = scenario.Records();
  BINVarList variables = scenario.VarList();
  std::string expected;
  std::size_t resultCount = 0;
};

// Once with files that may not grow, of fewer records too than are written at once, and once
// without descriptors.
TEST_P(FullDisk, AFailureThatPassesIsForgotten) {
  struct Row {
    int resource;
    rlim_t value;
  };
  std::vector<Row> rows;
  for (const rlim_t bytes : {rlim_t{0}, rlim_t{8}, rlim_t{79999}, rlim_t{80001}, kFileBytes - 1}) {
    rows.push_back({RLIMIT_FSIZE, bytes});
  }
#ifndef __SANITIZE_ADDRESS__  // which needs descriptors itself
  for (rlim_t count = 0; count < 16; ++count) rows.push_back({RLIMIT_NOFILE, count});
#endif
  for (const int recordCount : {50, kRecords}) {
    const Scenario some = MixedScenario(recordCount);
    for (const Row& row : rows) {
      BINVarList list = some.VarList();
      WholeRun run(GetParam(), some.options, list, directory.Path());
      MCCommon::InMemoryRecordIterator mine = some.Records();
      testing::internal::CaptureStdout();
      {
        const Limit limit(row.resource, row.value);
        run.CreateBins(mine);
      }
      testing::internal::GetCapturedStdout();
      mine.Rewind();
      EXPECT_FALSE(run.CreateBins(mine).IsError());
      const std::string text = run.Text(resultCount);
      EXPECT_EQ(text.find("120021"), std::string::npos) << row.resource << ' ' << row.value << '\n'
                                                        << text;
      EXPECT_EQ(text.find("120015"), std::string::npos) << row.resource << ' ' << row.value;
    }
  }
}

TEST_P(FullDisk, FilesThatStopAnywhereGiveNoWrongBins) {
  for (const rlim_t bytes :
       {rlim_t{0}, rlim_t{1}, rlim_t{8}, rlim_t{4096}, rlim_t{79999}, rlim_t{80000}, rlim_t{80001},
        rlim_t{80008}, kFileBytes - 8, kFileBytes - 1, kFileBytes, kFileBytes + 1}) {
    bool isRight = false;
    {
      const Limit limit(RLIMIT_FSIZE, bytes);
      EXPECT_EQ(FaultOf(directory.Path(), isRight), "") << bytes;
    }
    EXPECT_EQ(isRight, bytes >= kFileBytes) << bytes;
    EXPECT_EQ(directory.FileCount(), 0u) << bytes;
  }
}

TEST_P(FullDisk, NoDescriptorsLeftGiveNoWrongBins) {
#ifdef __SANITIZE_ADDRESS__
  GTEST_SKIP() << "the sanitizers need descriptors themselves";
#endif
  for (rlim_t count = 0; count < 64; ++count) {
    bool isRight = false;
    std::string fault;
    testing::internal::CaptureStdout();  // one line for each file that cannot be read
    {
      const Limit limit(RLIMIT_NOFILE, count);
      fault = FaultOf(directory.Path(), isRight);
    }
    testing::internal::GetCapturedStdout();
    EXPECT_EQ(fault, "") << count;
    EXPECT_EQ(directory.FileCount(), 0u) << count;
  }
}

constexpr int kCannotMount = 77;

// In a child process that sees a small disk of its own: 0 when every run there was right or
// refused, both happened, and nothing was left.
int RunOnSmallDisks(const std::string& path, const std::function<bool(bool& isRight)>& run) {
  int seenRight = 0;
  int seenRefused = 0;
  if (unshare(CLONE_NEWNS) != 0 ||
      mount(nullptr, "/", nullptr, MS_REC | MS_PRIVATE, nullptr) != 0) {
    return kCannotMount;
  }
  for (int pages = 8; pages <= 128; pages += 5) {
    const std::string size = "size=" + std::to_string(pages * 4) + "k";
    if (mount("tmpfs", path.c_str(), "tmpfs", 0, size.c_str()) != 0) return kCannotMount;
    bool isRight = false;
    if (!run(isRight)) return 1;
    ++(isRight ? seenRight : seenRefused);
    // With anything left in it open, or a file still there, that would not do.
    if (rmdir(path.c_str()) == 0 || umount(path.c_str()) != 0) return 2;
  }
  return seenRight > 0 && seenRefused > 0 ? 0 : 3;
}

TEST_P(FullDisk, ADiskThatFillsUpGivesNoWrongBins) {
  const pid_t process = fork();
  if (process == 0) {
    _exit(RunOnSmallDisks(directory.Path(), [&](bool& isRight) {
      return FaultOf(directory.Path(), isRight).empty() && directory.FileCount() == 0;
    }));
  }
  int status = -1;
  ASSERT_EQ(waitpid(process, &status, 0), process);
  ASSERT_TRUE(WIFEXITED(status));
  if (WEXITSTATUS(status) == kCannotMount) GTEST_SKIP() << "no right to mount a small disk";
  EXPECT_EQ(WEXITSTATUS(status), 0);
}

INSTANTIATE_TEST_SUITE_P(Drivers, FullDisk, testing::ValuesIn(kDrivers),
                         testing::PrintToStringParamName());

}  // namespace
