#include "io/privatedirectory.h"

#include <fmt/format.h>
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include <filesystem>
#include <fstream>
#include <ostream>
#include <string>
#include <thread>
#include <vector>

#include "binmodel/model/refusal.h"
#include "support/rowname.h"
#include "support/tempdir.h"

namespace {

using MCBin::PrivateDirectory;
namespace fs = std::filesystem;

// The name that this user's process of that number could have given.
std::string OurName(int process) { return fmt::format("mcbin-{}-{}-aBc123", geteuid(), process); }

void MakeDirectory(const fs::path& path, mode_t mode = 0700) {
  ASSERT_EQ(mkdir(path.c_str(), mode), 0);
  ASSERT_EQ(chmod(path.c_str(), mode), 0);
}

void MakeFile(const fs::path& path) { std::ofstream(path) << "content"; }

class PrivateDirectoryTest : public testing::Test {
 protected:
  // What a run that makes and removes its own directory leaves of `path`.
  bool SurvivesARun(const fs::path& path) const {
    PrivateDirectory(parent.Path());
    return fs::exists(fs::symlink_status(path));
  }

  TempDir parent;
};

TEST_F(PrivateDirectoryTest, IsForItsUserAloneAndGoesWithAllItHolds) {
  {
    const PrivateDirectory directory(parent.Path());
    struct stat status = {};
    ASSERT_EQ(stat(directory.GetPath().c_str(), &status), 0);
    EXPECT_EQ(status.st_mode & 0777, 0700u);
    MakeFile(directory.GetPath() + "/4711");
  }
  EXPECT_EQ(parent.FileCount(), 0u);
  EXPECT_THROW(PrivateDirectory(parent.Path() + "/absent"), MCBinModel::Refusal);
}

TEST_F(PrivateDirectoryTest, StaysWhileItsOwnerLives) {
  const PrivateDirectory alive(parent.Path());
  MakeFile(alive.GetPath() + "/4711");
  EXPECT_TRUE(SurvivesARun(alive.GetPath() + "/4711"));
}

// Something whose name is, or is like, that of a leftover.
struct Found {
  const char* name;
  std::string fileName;
  void (*make)(const fs::path& path);
  bool survives;
};

void PrintTo(const Found& found, std::ostream* os) { *os << found.name; }

void MakeLeftover(const fs::path& path) {
  MakeDirectory(path);
  MakeFile(path / "lock");
  MakeFile(path / "4711");
}

class FoundTest : public PrivateDirectoryTest, public testing::WithParamInterface<Found> {};

TEST_P(FoundTest, IsRemovedOnlyWhenItIsALeftover) {
  const fs::path path = fs::path(parent.Path()) / GetParam().fileName;
  GetParam().make(path);
  EXPECT_EQ(SurvivesARun(path), GetParam().survives);
}

// In the test's own process: a process number that lives again protects nothing.
const Found kFound[] = {
    {"OfALivingNumber", OurName(getpid()), MakeLeftover, false},
    {"OfNoProcess", OurName(1 << 30), MakeLeftover, false},
    {"NeverBegun", OurName(1), [](const auto& path) { MakeDirectory(path); }, false},
    {"WithoutLock", OurName(1),
     [](const auto& path) {
       MakeDirectory(path);
       MakeFile(path / "data");
     },
     true},
    {"OfOtherModes", OurName(1),
     [](const auto& path) {
       MakeLeftover(path);
       chmod(path.c_str(), 0755);
     },
     true},
    {"OtherName", OurName(1) + "x", MakeLeftover, true},
    {"OtherUsersName", fmt::format("mcbin-{}-1-aBc123", geteuid() + 1), MakeLeftover, true},
    {"File", OurName(1), MakeFile, true},
    {"Link", OurName(1),
     [](const auto& path) {
       MakeLeftover(path.parent_path() / "elsewhere");
       fs::create_symlink("elsewhere", path);
     },
     true},
    {"LockIsALink", OurName(1),
     [](const auto& path) {
       MakeDirectory(path);
       MakeFile(path.parent_path() / "elsewhere");
       fs::create_symlink("../elsewhere", path / "lock");
     },
     true},
};

INSTANTIATE_TEST_SUITE_P(Cases, FoundTest, testing::ValuesIn(kFound), RowName);

TEST_F(PrivateDirectoryTest, OfAnotherUserStays) {
  if (geteuid() != 0) GTEST_SKIP() << "needs two users";
  const fs::path path = fs::path(parent.Path()) / OurName(1);
  MakeLeftover(path);
  ASSERT_EQ(chown(path.c_str(), 65534, 65534), 0);
  EXPECT_TRUE(SurvivesARun(path / "4711"));
}

TEST_F(PrivateDirectoryTest, NoLinkIsFollowedOutOfALeftover) {
  const fs::path path = fs::path(parent.Path()) / OurName(1);
  const fs::path precious = fs::path(parent.Path()) / "precious";
  MakeDirectory(precious);
  MakeFile(precious / "file");
  MakeLeftover(path);
  fs::create_symlink(precious, path / "directory");
  fs::create_symlink(precious / "file", path / "file");
  EXPECT_FALSE(SurvivesARun(path));
  EXPECT_TRUE(fs::exists(precious / "file"));
}

// Each run sees the directories of the others in every stage of being made and removed.
TEST_F(PrivateDirectoryTest, RunsSideBySideTakeNothingFromEachOther) {
  const auto runMany = [this] {
    for (int i = 0; i < 200; ++i) {
      const PrivateDirectory directory(parent.Path());
      MakeFile(directory.GetPath() + "/4711");
      EXPECT_TRUE(fs::exists(directory.GetPath() + "/4711")) << i;
    }
  };
  {
    std::vector<std::jthread> threads;
    for (int i = 0; i < 4; ++i) threads.emplace_back(runMany);
  }
  EXPECT_EQ(parent.FileCount(), 0u);
}

}  // namespace
