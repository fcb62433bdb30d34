#include "io/outputfile.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <signal.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <ostream>
#include <string>

#include "binmodel/model/refusal.h"
#include "cli/terminal/resultstream.h"
#include "io/interrupt.h"
#include "support/libraryfaults.h"
#include "support/rowname.h"
#include "support/tempdir.h"

namespace {

using MCBin::OutputFile;
namespace fs = std::filesystem;

class OutputFileTest : public testing::Test {
 protected:
  static std::string Content(const fs::path& path) {
    std::ifstream file(path);
    return {std::istreambuf_iterator<char>(file), {}};
  }

  static void WriteWhole(const fs::path& path, const char* content) {
    OutputFile file(path.string());
    file.Write(content);
    file.Commit();
  }

  TempDir fPlace;
  const fs::path fDirectory = fPlace.Path();
  const fs::path fPath = fDirectory / "bins.json";
};

TEST_F(OutputFileTest, ReplacesAFileAtTheEndAndKeepsItPrivate) {
  std::ofstream(fPath) << "old";
  fs::permissions(fPath, fs::perms::owner_read | fs::perms::owner_write);

  OutputFile file(fPath.string());
  EXPECT_EQ(fPlace.FileCount(), 1u);  // a run takes long: no other name before it has an end
  file.Write("new");
  EXPECT_EQ(Content(fPath), "old");
  file.Commit();
  EXPECT_EQ(Content(fPath), "new");
  EXPECT_EQ(fs::status(fPath).permissions(), fs::perms::owner_read | fs::perms::owner_write);
  EXPECT_EQ(fPlace.FileCount(), 1u);
}

TEST_F(OutputFileTest, LeavesTheOldFileWhenItsCloseFails) {
  std::ofstream(fPath) << "old";
  {
    OutputFile file(fPath.string());
    file.Write("new");
    const FailingClose closing(EIO);
    EXPECT_THROW(file.Commit(), MCBinModel::Refusal);
  }
  EXPECT_EQ(Content(fPath), "old");
  EXPECT_EQ(fPlace.FileCount(), 1u);
}

// A look at the flag alone would lose a signal that comes just before a call that waits.
TEST(InterruptDeathTest, EndsACallThatBeginsToWaitAfterTheSignal) {
  const auto run = [] {
    signal(SIGINT, SIG_DFL);
    MCBin::Interrupt::Install();
    int ends[2];
    char byte = 0;
    if (pipe(ends) != 0) std::exit(1);
    raise(SIGINT);
    const bool hasEnded = read(ends[0], &byte, 1) < 0 && errno == EINTR;
    std::exit(hasEnded ? 130 : 1);
  };
  EXPECT_EXIT(run(), testing::ExitedWithCode(130), "");
}

TEST_F(OutputFileTest, IsWrittenWhereSymbolicLinksLead) {
  fs::create_directory(fDirectory / "kept");
  fs::create_symlink("kept/link", fPath);
  fs::create_symlink("new.json", fDirectory / "kept/link");
  WriteWhole(fPath, "first");  // there is no such file yet
  WriteWhole(fPath, "second");
  EXPECT_EQ(fs::read_symlink(fPath), "kept/link");
  EXPECT_EQ(Content(fDirectory / "kept/new.json"), "second");
  fs::create_symlink("ring", fDirectory / "ring");
  EXPECT_THROW(OutputFile((fDirectory / "ring").string()), MCBinModel::Refusal);
}

// What bears, or nearly, the name of an unfinished file.
struct Leftover {
  const char* name;
  std::string fileName;
  void (*make)(const fs::path& path);
  bool survives;
};
void PrintTo(const Leftover& row, std::ostream* os) { *os << row.name; }

void MakeFile(const fs::path& path) { std::ofstream(path) << "half a fi"; }

class LeftoverTest : public OutputFileTest, public testing::WithParamInterface<Leftover> {};

TEST_P(LeftoverTest, IsRemovedOnlyWhenItIsOne) {
  const fs::path path = fDirectory / GetParam().fileName;
  GetParam().make(path);
  const OutputFile file(fPath.string());
  EXPECT_EQ(fs::exists(fs::symlink_status(path)), GetParam().survives);
}

const std::string kUnfinished = ".mcbin-0123456789abcdef.tmp";

const Leftover kLeftovers[] = {
    {"OfAKilledRun", kUnfinished, MakeFile, false},
    {"Locked", kUnfinished,
     [](const auto& path) {
       MakeFile(path);
       flock(open(path.c_str(), O_RDWR | O_CLOEXEC), LOCK_EX);  // as long as the tests run
     },
     true},
    {"ShorterName", ".mcbin-0123456789abcde.tmp", MakeFile, true},
    {"OtherDigits", ".mcbin-0123456789ABCDEF.tmp", MakeFile, true},
    {"OtherEnd", ".mcbin-0123456789abcdef.csv", MakeFile, true},
    {"NamedPipe", kUnfinished, [](const auto& path) { mkfifo(path.c_str(), 0600); }, true},
    {"Directory", kUnfinished, [](const auto& path) { fs::create_directory(path); }, true},
    {"Link", kUnfinished,
     [](const auto& path) {
       MakeFile(path.parent_path() / "other");
       fs::create_symlink("other", path);
     },
     true},
};

INSTANTIATE_TEST_SUITE_P(Cases, LeftoverTest, testing::ValuesIn(kLeftovers), RowName);

// Standard output of this process, led elsewhere.
class ResultStreamTest : public OutputFileTest {
 protected:
  void LeadTo(int file) {
    ASSERT_GE(dup2(file, STDOUT_FILENO), 0);
    close(file);
  }
  void TearDown() override { LeadTo(fOwnOutput); }

 private:
  const int fOwnOutput = dup(STDOUT_FILENO);
};

TEST_F(ResultStreamTest, FailsWhenTheCloseOfItsFileFails) {
  LeadTo(open(fPath.c_str(), O_WRONLY | O_CREAT | O_CLOEXEC, 0600));
  MCBin::ResultStream out;
  out.Write("bins");
  const FailingClose closing(EIO);
  EXPECT_THROW(out.Close(), MCBinModel::Refusal);
}

TEST_F(ResultStreamTest, ShowsATerminalTheEscapesOfAFile) {
  const int terminal = posix_openpt(O_RDWR | O_NOCTTY | O_CLOEXEC);
  char name[64] = {};
  const bool isOpen =
      grantpt(terminal) == 0 && unlockpt(terminal) == 0 && ptsname_r(terminal, name, 64) == 0;
  if (!isOpen) GTEST_SKIP() << "no terminals here";
  LeadTo(open(name, O_WRONLY | O_NOCTTY | O_CLOEXEC));
  MCBin::ResultStream out;
  out.WriteContent("\"a\x1B[2J\"\n  AS b\n");
  out.Close();
  char shown[64] = {};
  EXPECT_GT(read(terminal, shown, sizeof shown - 1), 0);
  EXPECT_STREQ(shown, "\"a\\x1B[2J\"\r\n  AS b\r\n");
  close(terminal);
}

}  // namespace
