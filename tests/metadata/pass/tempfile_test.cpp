#include "metadata/pass/tempfile.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <filesystem>
#include <functional>
#include <optional>
#include <vector>

#include "metadata/binaryrecorditerator.h"
#include "support/doublefile.h"
#include "support/libraryfaults.h"
#include "support/rowname.h"
#include "support/tempdir.h"

namespace {

using Doubles = std::vector<double>;
using MCBinning::TempFile;
using Result = TempFile::AppendResult;
namespace fs = std::filesystem;

class TempFileTest : public testing::Test {
 protected:
  Result Append(const Doubles& values) { return file->Append(values.data(), values.size()); }

  // By its name, and by a descriptor of it.
  bool IsWhole(std::uint64_t count) const {
    const auto values = file->OpenWhole(count);
    EXPECT_TRUE(!values || file->IsWhole(values->GetFileDescriptor(), count));
    return values != nullptr;
  }

  TempDir directory;
  std::string path = directory.Path() + "/file";
  std::optional<TempFile> file{path};
};

TEST_F(TempFileTest, IsMadeAtItsFirstAppendForItsOwnerAloneAndRemoved) {
  EXPECT_FALSE(fs::exists(path));
  const mode_t oldMask = umask(0);
  EXPECT_EQ(Append({1, 2}), Result::kOk);
  umask(oldMask);
  struct stat status;
  ASSERT_EQ(stat(path.c_str(), &status), 0);
  EXPECT_EQ(status.st_mode & 0777, 0600u);
  EXPECT_EQ(Append({}), Result::kOk);
  EXPECT_EQ(Append({3}), Result::kOk);
  EXPECT_EQ(ReadDoubles(path), (Doubles{1, 2, 3}));
  EXPECT_TRUE(IsWhole(3));
  EXPECT_FALSE(IsWhole(2) || IsWhole(4));

  std::optional<TempFile> moved(std::move(*file));
  file.reset();
  EXPECT_TRUE(fs::exists(path)) << "the new object's now";
  moved.reset();
  EXPECT_FALSE(fs::exists(path));
}

TEST_F(TempFileTest, LeavesATakenNameAlone) {
  const std::string elsewhere = directory.Path() + "/elsewhere";
  for (const bool isDanglingLink : {false, true}) {
    if (isDanglingLink) {
      fs::create_symlink(elsewhere, path);
    } else {
      WriteDoubles(path, {9});
    }
    EXPECT_EQ(Append({1}), Result::kNameTaken);
    EXPECT_FALSE(file->IsBegun());
    file.emplace(path);
    EXPECT_TRUE(fs::is_symlink(path) || ReadDoubles(path) == Doubles{9});
    EXPECT_FALSE(fs::exists(elsewhere));
    fs::remove(path);
  }
}

TEST_F(TempFileTest, HoldsNoValuesThatItsCloseMayHaveLost) {
  {
    const FailingClose failing(ENOSPC);
    EXPECT_EQ(Append({1}), Result::kFailed);
  }
  EXPECT_FALSE(IsWhole(1));
  EXPECT_EQ(Append({2}), Result::kFailed);
  file.reset();
  EXPECT_FALSE(fs::exists(path));
}

// What someone else does to a file that was begun with the value 1.
struct Interference {
  const char* name;
  std::function<void(const std::string& path)> apply;
  Doubles left;  // of what then bears the name
};

void PrintTo(const Interference& interference, std::ostream* os) { *os << interference.name; }

class TakenOver : public TempFileTest, public testing::WithParamInterface<Interference> {};

TEST_P(TakenOver, IsNeitherAppendedToNorReadNorRemoved) {
  ASSERT_EQ(Append({1}), Result::kOk);
  GetParam().apply(path);
  EXPECT_EQ(Append({2}), Result::kFailed);
  EXPECT_EQ(ReadDoubles(path), GetParam().left);
  testing::internal::CaptureStdout();  // a line for a file that cannot be opened
  EXPECT_FALSE(IsWhole(1) || IsWhole(2));
  testing::internal::GetCapturedStdout();
  file.reset();
  EXPECT_EQ(ReadDoubles(path), GetParam().left);
}

TEST_F(TempFileTest, RemovesItsOwnFileThoughSomeoneChangedItsSize) {
  for (const std::uintmax_t size : {0u, 8u, 24u}) {
    file.emplace(path);
    ASSERT_EQ(Append({1, 2}), Result::kOk);
    fs::resize_file(path, size);
    EXPECT_EQ(Append({3}), Result::kFailed) << size;
    EXPECT_FALSE(IsWhole(size / sizeof(double))) << size;
    file.reset();
    EXPECT_FALSE(fs::exists(path)) << size;
  }
}

// With someone at the other end of the pipe, and with nobody, who is then waited for.
TEST_F(TempFileTest, TakesNothingFromAPipeInItsPlaceNorWaitsForOne) {
  for (const bool hasOtherEnd : {false, true}) {
    file.emplace(path);
    ASSERT_EQ(Append({1}), Result::kOk);
    fs::remove(path);
    ASSERT_EQ(mkfifo(path.c_str(), 0600), 0);
    const int otherEnd = hasOtherEnd ? open(path.c_str(), O_RDWR | O_NONBLOCK) : -1;
    const double sent = 7;
    ASSERT_TRUE(!hasOtherEnd || write(otherEnd, &sent, sizeof sent) == sizeof sent);
    EXPECT_EQ(Append({2}), Result::kFailed);
    EXPECT_FALSE(IsWhole(0) || IsWhole(1));
    file.reset();
    EXPECT_TRUE(fs::is_fifo(path));
    Doubles left(2);
    EXPECT_EQ(read(otherEnd, left.data(), sizeof left), hasOtherEnd ? 8 : -1);
    close(otherEnd);
    fs::remove(path);
  }
}

// A new file of the values 7 and 8, which does not get the inode number of the old one.
std::string NewFile(const std::string& path) {
  WriteDoubles(path + ".new", {7, 8});
  return path + ".new";
}

const Interference kInterferences[] = {
    {"Removed", [](const std::string& path) { fs::remove(path); }, {}},
    {"Rewritten", [](const auto& path) { fs::remove(path), WriteDoubles(path, {7}); }, {7}},
    {"Replaced", [](const auto& path) { fs::rename(NewFile(path), path); }, {7, 8}},
    {"LinkInItsPlace",
     [](const auto& path) { fs::remove(path), fs::create_symlink(NewFile(path), path); },
     {7, 8}},
};

INSTANTIATE_TEST_SUITE_P(Interferences, TakenOver, testing::ValuesIn(kInterferences), RowName);

}  // namespace
