#include "io/valuefile.h"

#include <gtest/gtest.h>

#include <cstddef>
#include <filesystem>
#include <vector>

#include "binmodel/run/recordblocks.h"
#include "support/tempdir.h"

namespace {

using MCBin::ValueFile;
using MCBinModel::RecordBlocks;

constexpr std::size_t kColumns = 5;
constexpr std::size_t kAbandoned = 2;

double ValueOf(std::size_t record, std::size_t column) {
  return static_cast<double>(record * kColumns + column);
}

// Gives one of the columns up on the way.
void Write(ValueFile& file, std::size_t recordCount) {
  for (std::size_t record = 0; record < recordCount; ++record) {
    for (std::size_t column = 0; column < kColumns; ++column) {
      file.Set(column, ValueOf(record, column));
    }
    if (record == file.GetRecordsPerBlock() + 1) file.Abandon(kAbandoned);
    file.FinishRecord();
  }
  file.Finish();
}

TEST(ValueFile, GivesBackTheColumnsAskedForInRecordOrder) {
  const TempDir directory;
  const std::size_t perBlock = ValueFile(directory.Path(), kColumns).GetRecordsPerBlock();
  for (const std::size_t recordCount : {std::size_t{0}, std::size_t{1}, perBlock - 1, perBlock,
                                        perBlock + 1, 3 * perBlock, 3 * perBlock + 7}) {
    ValueFile file(directory.Path(), kColumns);
    Write(file, recordCount);
    for (const std::vector<std::size_t>& columns :
         {std::vector<std::size_t>{4, 0, 3}, std::vector<std::size_t>{1}}) {
      std::vector<MCBinModel::SourceColumn> asked;
      for (const std::size_t column : columns) asked.push_back({column, nullptr});
      RecordBlocks records(file, asked);
      std::size_t record = 0;
      for (; records.HasMore(); ++record) {
        const MCCommon::Record& values = *records.Next();
        for (std::size_t i = 0; i < columns.size(); ++i) {
          ASSERT_EQ(values[i], ValueOf(record, columns[i])) << record << " of " << recordCount;
        }
      }
      EXPECT_EQ(record, recordCount);
      EXPECT_EQ(records.Next(), nullptr);
    }
  }
}

TEST(ValueFile, HasNoNameThatCouldStayBehind) {
  const TempDir directory;
  ValueFile file(directory.Path(), kColumns);
  Write(file, 1);
  EXPECT_TRUE(std::filesystem::is_empty(directory.Path()));
}

}  // namespace
