#include "binmodel/run/memorycolumns.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <limits>
#include <stdexcept>
#include <string_view>
#include <vector>

#include "binmodel/model/refusal.h"
#include "common/missing.h"

namespace {

using MCBinModel::ColumnView;
using MCBinModel::MemoryColumns;
using MCBinModel::VariableInfo;

// All values of a column; -99 where it is missing.
std::vector<double> Read(const MemoryColumns& columns, std::size_t column) {
  std::vector<double> all;
  const std::size_t perBlock = columns.GetRecordsPerBlock();
  for (std::size_t block = 0; block * perBlock < columns.GetRecordCount(); ++block) {
    std::vector<double> values(perBlock);
    columns.Read(block, column, values.data());
    const auto left = static_cast<std::size_t>(columns.GetRecordCount() - block * perBlock);
    values.resize(std::min(perBlock, left));
    all.insert(all.end(), values.begin(), values.end());
  }
  for (double& value : all) {
    if (MCMV::IsMissing(value) || value != value || value == -1.0) value = -99.0;
  }
  return all;
}

using Values = std::vector<double>;

TEST(MemoryColumns, FindsValuesWhereverTheyLie) {
  struct __attribute__((packed)) Row {
    char before;
    double number;
    float single;
    std::int64_t whole;
  };
  const Row rows[] = {{'a', 0.5, 1.5F, -7}, {'b', 1e300, 2.5F, 1ll << 40}, {'c', -0.25, -3.0F, 0}};
  const auto address = [&](std::size_t offset) {
    return static_cast<const void*>(reinterpret_cast<const char*>(rows) + offset);
  };
  MemoryColumns columns(3);
  const std::uint8_t validity[] = {0xFF, 0b10110111};  // bits 10 to 12 are 1, 0, 1
  columns.Add(
      ColumnView<double>{static_cast<const double*>(address(offsetof(Row, number))), sizeof(Row)});
  columns.Add(ColumnView<float>{static_cast<const float*>(address(offsetof(Row, single))),
                                sizeof(Row), validity, 10});
  columns.Add(ColumnView<std::int64_t>{
      static_cast<const std::int64_t*>(address(2 * sizeof(Row) + offsetof(Row, whole))),
      -static_cast<std::ptrdiff_t>(sizeof(Row))});
  EXPECT_EQ(Read(columns, 0), (Values{0.5, 1e300, -0.25}));
  EXPECT_EQ(Read(columns, 1), (Values{1.5, -99, -3}));
  EXPECT_EQ(Read(columns, 2), (Values{0, 1099511627776.0, -7}));
  double value = 0.0;
  EXPECT_THROW(columns.Read(0, 3, &value), std::out_of_range);
}

TEST(MemoryColumns, CodesCategoriesAsTheyCome) {
  const std::vector<std::string_view> texts = {"b", "", "a", "?", "b", "x"};
  const std::vector<double> numbers = {7, std::numeric_limits<double>::quiet_NaN(), -0.0, 99, 0, 7};
  const std::uint8_t validity = 0b011111;
  MemoryColumns columns(6);
  VariableInfo text;
  text.texts = {"a"};
  text.missing.texts = {"?"};
  columns.AddCategories(ColumnView<std::string_view>{texts.data(), sizeof(texts[0]), &validity},
                        text);
  VariableInfo number;
  number.missing.interval = {90.0, 100.0};
  columns.AddCategories(ColumnView<double>{numbers.data()}, number);
  EXPECT_EQ(Read(columns, 0), (Values{1, 2, 0, -99, 1, -99}));
  EXPECT_EQ(text.kind, MCBinModel::VariableKind::kStringCategorical);
  EXPECT_EQ(text.texts, (std::vector<std::string>{"a", "b", ""}));
  EXPECT_EQ(Read(columns, 1), (Values{0, -99, 1, -99, 1, 0}));
  EXPECT_EQ(number.kind, MCBinModel::VariableKind::kNumericCategorical);
  EXPECT_EQ(number.numbers, (Values{7, 0}));
}

TEST(MemoryColumns, RefusesWhatCannotBeACategory) {
  std::vector<double> many(257);
  for (std::size_t i = 0; i < many.size(); ++i) many[i] = static_cast<double>(i);
  VariableInfo variable;
  EXPECT_NO_THROW(MemoryColumns(256).AddCategories(ColumnView<double>{many.data()}, variable));
  variable = {};
  EXPECT_THROW(MemoryColumns(257).AddCategories(ColumnView<double>{many.data()}, variable),
               MCBinModel::Refusal);
  many[0] = std::numeric_limits<double>::infinity();
  EXPECT_THROW(MemoryColumns(1).AddCategories(ColumnView<double>{many.data()}, variable),
               MCBinModel::Refusal);
}

}  // namespace
