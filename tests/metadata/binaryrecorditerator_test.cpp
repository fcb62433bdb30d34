#include "metadata/binaryrecorditerator.h"

#include <gtest/gtest.h>

#include <numeric>
#include <utility>

#include "support/doublefile.h"
#include "support/tempdir.h"

namespace {

using Doubles = std::vector<double>;
using Iterator = MCBinning::BinaryRecordIterator;

// Reads a pass by blocks, and so many values one by one after each.
Doubles ReadPass(Iterator& iterator, std::size_t valuesBetween) {
  Doubles read;
  while (iterator.HasMore()) {
    EXPECT_EQ(iterator.GetFailReason(), 0);
    const Iterator::Block block = iterator.NextBlock();
    EXPECT_GT(block.count, 0u);
    Doubles following;
    while (following.size() < valuesBetween && iterator.HasMore()) {
      following.push_back(iterator.Next());
    }
    read.insert(read.end(), block.values, block.values + block.count);  // valid still
    read.insert(read.end(), following.begin(), following.end());
  }
  EXPECT_EQ(iterator.Next(), 0.0);
  EXPECT_EQ(iterator.NextBlock().count, 0u);
  EXPECT_EQ(iterator.GetFailReason(), 1);
  return read;
}

// Files of whole values, and then of some bytes that are none.
TEST(BinaryRecordIterator, GivesEachValueOnceInEveryPassByBlocksAndByValues) {
  const TempDir directory;
  const std::string path = directory.Path() + "/values";
  for (const auto& [count, extraBytes] :
       {std::pair(0u, 0u), {0, 7}, {1, 0}, {3, 3}, {4096, 0}, {4096, 4}, {4097, 0}, {13000, 0}}) {
    Doubles values(count);
    std::iota(values.begin(), values.end(), 1.0);
    WriteDoubles(path, values, extraBytes);
    Iterator iterator(path);
    Doubles oneByOne;
    while (iterator.HasMore()) oneByOne.push_back(iterator.Next());
    EXPECT_EQ(oneByOne, values);
    for (const std::size_t valuesBetween : {0u, 1u, 5u, 4096u}) {
      EXPECT_EQ(iterator.NewPass(), values.empty() ? 1 : 0);
      EXPECT_EQ(ReadPass(iterator, valuesBetween), values) << count << " by " << valuesBetween;
    }
  }
}

TEST(BinaryRecordIterator, SaysAtOnceThatAFileCannotBeReadAndStaysClosed) {
  const TempDir directory;
  const std::string path = directory.Path() + "/absent";
  testing::internal::CaptureStdout();
  Iterator absent(path);
  EXPECT_EQ(testing::internal::GetCapturedStdout(),
            "Error: file handle is NULL in BinaryRecordIterator constructor");
  WriteDoubles(path, {1});
  Iterator folder(directory.Path());
  for (Iterator* iterator : {&absent, &folder}) {
    EXPECT_FALSE(iterator->HasMore());
    EXPECT_EQ(iterator->NewPass(), 3);
    EXPECT_EQ(iterator->Next(), 0.0);
  }
}

}  // namespace
