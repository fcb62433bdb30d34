#include "metadata/binaryrecorditerator.h"

#include <gtest/gtest.h>

#include <numeric>
#include <utility>

#include "support/doublefile.h"
#include "support/tempdir.h"

namespace {

using Doubles = std::vector<double>;
using Iterator = MCBinning::BinaryRecordIterator;

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

TEST(BinaryRecordIterator, SaysThatAFileCannotBeOpened) {
  const TempDir directory;
  const std::string path = directory.Path() + "/absent";
  testing::internal::CaptureStdout();
  Iterator iterator(path);
  EXPECT_EQ(testing::internal::GetCapturedStdout(),
            "Error: file handle is NULL in BinaryRecordIterator constructor");
  WriteDoubles(path, {1});
  EXPECT_FALSE(iterator.HasMore());
  EXPECT_EQ(iterator.NewPass(), 3) << "not opened again";
  EXPECT_EQ(iterator.Next(), 0.0);
  EXPECT_EQ(iterator.GetFileDescriptor(), -1);
}

TEST(BinaryRecordIterator, CannotReadADirectory) {
  const TempDir directory;
  Iterator iterator(directory.Path());
  EXPECT_FALSE(iterator.HasMore());
  EXPECT_EQ(iterator.GetFailReason(), 3);
  EXPECT_EQ(iterator.NewPass(), 3);
}

}  // namespace
