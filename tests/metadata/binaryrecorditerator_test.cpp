#include "metadata/binaryrecorditerator.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>
#include <fstream>
#include <iterator>
#include <new>
#include <numeric>
#include <optional>
#include <utility>

#include "support/doublefile.h"
#include "support/libraryfaults.h"
#include "support/tempdir.h"

namespace {

using Doubles = std::vector<double>;
using Iterator = MCBinning::BinaryRecordIterator;

std::string TextOfFile(const std::string& path) {
  std::ifstream file(path);
  return {std::istreambuf_iterator<char>(file), {}};
}

// A file of the values 1, 2, ..., and then of some bytes that are no whole value.
class BinaryFile : public testing::TestWithParam<std::pair<std::size_t, std::size_t>> {
 protected:
  BinaryFile() : values(GetParam().first), path(directory.Path() + "/values") {
    std::iota(values.begin(), values.end(), 1.0);
    WriteDoubles(path, values, GetParam().second);
  }

  TempDir directory;
  Doubles values;
  std::string path;
};

TEST_P(BinaryFile, GivesEachValueOnceInEveryPass) {
  Iterator iterator(path);
  for (int pass = 0; pass < 2; ++pass) {
    Doubles read;
    while (iterator.HasMore()) {
      EXPECT_EQ(iterator.GetFailReason(), 0);
      read.push_back(iterator.Next());
    }
    EXPECT_EQ(read, values);
    EXPECT_EQ(iterator.Next(), 0.0);
    EXPECT_EQ(iterator.NextBlock().count, 0u);
    EXPECT_EQ(iterator.GetFailReason(), 1);
    EXPECT_EQ(iterator.NewPass(), values.empty() ? 1 : 0);
  }
}

TEST_P(BinaryFile, GivesTheSameByBlocksAndByValues) {
  Iterator iterator(path);
  for (const std::size_t valuesBetween : {0u, 1u, 5u, 4096u}) {
    iterator.NewPass();
    Doubles read;
    while (iterator.HasMore()) {
      const Iterator::Block block = iterator.NextBlock();
      ASSERT_GT(block.count, 0u);
      Doubles following;
      while (following.size() < valuesBetween && iterator.HasMore()) {
        following.push_back(iterator.Next());
      }
      read.insert(read.end(), block.values, block.values + block.count);  // valid still
      read.insert(read.end(), following.begin(), following.end());
    }
    EXPECT_EQ(read, values) << valuesBetween << " values after each block";
  }
}

using Size = std::pair<std::size_t, std::size_t>;
INSTANTIATE_TEST_SUITE_P(Sizes, BinaryFile,
                         testing::Values(Size{0, 0}, Size{0, 7}, Size{1, 0}, Size{3, 3},
                                         Size{4096, 0}, Size{4096, 4}, Size{4097, 0},
                                         Size{13000, 0}));

// What happens while the object lives goes to a file, but for what is still buffered at its end.
class RedirectedOutput {
 public:
  explicit RedirectedOutput(const std::string& path) : fOutput(dup(STDOUT_FILENO)) {
    std::fflush(stdout);
    dup2(creat(path.c_str(), 0600), STDOUT_FILENO);
  }
  ~RedirectedOutput() {
    dup2(fOutput, STDOUT_FILENO);
    close(fOutput);
  }
  RedirectedOutput(const RedirectedOutput&) = delete;
  RedirectedOutput& operator=(const RedirectedOutput&) = delete;

 private:
  const int fOutput;
};

TEST(BinaryRecordIterator, SaysAtOnceThatAFileCannotBeOpened) {
  const TempDir directory;
  const std::string path = directory.Path() + "/absent";
  const std::string output = directory.Path() + "/output";
  std::optional<RedirectedOutput> redirected(output);
  Iterator iterator(path);
  redirected.reset();
  EXPECT_EQ(TextOfFile(output), "Error: file handle is NULL in BinaryRecordIterator constructor");
  WriteDoubles(path, {1});
  EXPECT_FALSE(iterator.HasMore());
  EXPECT_EQ(iterator.NewPass(), 3) << "not opened again";
  EXPECT_EQ(iterator.Next(), 0.0);
  EXPECT_EQ(iterator.GetFileDescriptor(), -1);
}

TEST(BinaryRecordIterator, DoesNotWaitForTheOtherEndOfAPipe) {
  const TempDir directory;
  const std::string path = directory.Path() + "/pipe";
  ASSERT_EQ(mkfifo(path.c_str(), 0600), 0);
  EXPECT_EQ(Iterator(path).GetFailReason(), 1);
  const int otherEnd = open(path.c_str(), O_RDWR);
  EXPECT_EQ(Iterator(path).GetFailReason(), 3) << "nothing there yet";
  close(otherEnd);
}

TEST(BinaryRecordIterator, ThrowsWhenThereIsNoMemoryForTheStream) {
  const TempDir directory;
  const std::string path = directory.Path() + "/values";
  WriteDoubles(path, {1});
  libraryfaults::Failing failing(libraryfaults::Call::kFdopen, 0, ENOMEM);
  EXPECT_THROW(Iterator{path}, std::bad_alloc);
}

TEST(BinaryRecordIterator, EndsWhereAReadFails) {
  const TempDir directory;
  const std::string path = directory.Path() + "/values";
  Doubles values(5000);
  std::iota(values.begin(), values.end(), 1.0);
  WriteDoubles(path, values);
  Iterator iterator(path);
  libraryfaults::Failing failing(libraryfaults::Call::kFread, 0, EIO);
  Doubles read;
  while (iterator.HasMore()) read.push_back(iterator.Next());
  EXPECT_EQ(iterator.GetFailReason(), 3);
  EXPECT_EQ(read, Doubles(values.begin(), values.begin() + 4096)) << "the block read before";
}

TEST(BinaryRecordIterator, CannotReadADirectory) {
  const TempDir directory;
  Iterator iterator(directory.Path());
  EXPECT_FALSE(iterator.HasMore());
  EXPECT_EQ(iterator.GetFailReason(), 3);
  EXPECT_EQ(iterator.NewPass(), 3);
}

}  // namespace
