#include "metadata/bindataset.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cfloat>
#include <cmath>
#include <filesystem>
#include <numeric>
#include <utility>
#include <vector>

#include "common/bincancelinfo.h"
#include "common/missing.h"
#include "metadata/bindatapreparator.h"
#include "support/agreement.h"
#include "support/doublefile.h"
#include "support/scenario.h"
#include "support/tempdir.h"

namespace {

using Doubles = std::vector<double>;
using Var = IBINVariable;

const double kMissing = MCMV::Missing();
const double kNaN = std::nan("");

// A data set after its pass over a scenario's records.
class Loaded {
 public:
  explicit Loaded(const Scenario& scenario)
      : fList(scenario.VarList()), fRecords(scenario.Records()) {
    EXPECT_TRUE(set.HandleDataFile().IsOK());
  }

  std::string Load(unsigned int attribute, unsigned int target) {
    const std::string status = Text(set.GetAttribute(attribute, target, tuples));
    EXPECT_EQ(tuples != nullptr, status == "0/0[0 0 0]");
    return status;
  }

  std::string LoadWithoutTarget(unsigned int attribute) {
    const std::string status = Text(set.GetAttribute(attribute, efTuples));
    EXPECT_EQ(efTuples != nullptr, status == "0/0[0 0 0]");
    return status;
  }

  std::vector<int> Targets() const {
    std::vector<int> targets;
    for (const BINDataTuple& tuple : *tuples) targets.push_back(tuple.target);
    return targets;
  }

 private:
  TempDir fDirectory;
  BINVarList fList;
  MCCommon::InMemoryRecordIterator fRecords;
  BINCancelInfo fCancel{nullptr};

 public:
  BINDataPreparator preparator{fList, fCancel, fDirectory.Path(), nullptr, 0};
  BINDataSet set{fRecords, preparator};
  std::vector<BINDataTuple>* tuples = nullptr;
  std::vector<EFBINDataTuple>* efTuples = nullptr;
};

const std::string kOk = "0/0[0 0 0]";
const std::string kMisfit = "120002/1[0 0 0]";

TEST(BINDataSet, KeepsAnyTargetIn8Bits) {
  Scenario scenario;
  scenario.Append(Continuous({1, 2, 3, 4}));
  scenario.Append(Categorical({0, 1, 1, 0}, 2, Var::RoleTarget));
  scenario.Append(Continuous({300, -1.5, 0, 2.9}));
  Loaded loaded(scenario);
  EXPECT_EQ(loaded.Load(0, 2), kOk) << "no codes";
  EXPECT_EQ(loaded.Targets(), (std::vector<int>{44, 255, 0, 2}));
  EXPECT_EQ(loaded.LoadWithoutTarget(0), kOk) << "which is nothing to the table below";
  const Doubles cuts{-DBL_MAX, DBL_MAX};
  Doubles table;
  EXPECT_EQ(Text(loaded.set.CreateBinTable(&cuts, true, table)), kMisfit);
}

TEST(BINDataSet, NoticesAFileThatWasReplaced) {
  Scenario scenario;
  scenario.Append(Continuous({1, 2, 3}));
  scenario.Append(Categorical({0, 1, 1}, 2, Var::RoleTarget));
  scenario.Append(Categorical({1, 0, 1}, 2));
  for (const std::size_t file : {1u, 2u}) {  // the attribute's, another target's
    Loaded loaded(scenario);
    EXPECT_EQ(loaded.Load(0, 1), kOk);
    const std::string name = loaded.preparator.GetFileNames()[file];
    std::filesystem::remove(name);
    WriteDoubles(name, {5, 5, 5});
    EXPECT_EQ(loaded.Load(0, 2), "120021/-1[0 0 0]");
    EXPECT_EQ(loaded.set.GetNumberOfCases(), 0u);
    EXPECT_EQ(loaded.LoadWithoutTarget(0), file == 1 ? "120021/-1[0 0 0]" : kOk);
  }
}

TEST(BINDataSet, ReadsAFileInRecordOrder) {
  Scenario scenario;
  scenario.Append(Continuous({5, 9, kMissing, 1}));
  scenario.Append(Categorical({1, kMissing, 0, 0}, 2, Var::RoleTarget));
  Loaded loaded(scenario);
  EXPECT_EQ(loaded.Load(0, 1), kOk);
  EXPECT_EQ(loaded.Targets(), (std::vector<int>{0, 1})) << "by value";
  EXPECT_EQ(Text(loaded.set.ReadNextAttribute(1)), kOk) << "the attribute's file";
  EXPECT_EQ(loaded.Targets(), (std::vector<int>{1, 0})) << "as they came";
  EXPECT_EQ(loaded.set.GetNumberOfCases(), 2u);
  EXPECT_EQ(Text(loaded.set.ReadNextAttribute(2)), "120011/1[0 0 0]") << "no such file";
}

// Few different values are counted at first; whoever asks for the cases gets them in their order.
TEST(BINDataSet, HandsOutCountedCasesOneByOne) {
  Doubles values, codes;
  for (int i = 0; i < 5000; ++i) {
    values.push_back(i % 7 == 0 ? (i % 3 == 0 ? -0.0 : 0.0) : i * 13 % 40 - 20);
    codes.push_back(i % 11 % 3);
  }
  Scenario scenario;
  scenario.Append(Continuous(values));
  scenario.Append(Categorical(codes, 3, Var::RoleTarget));
  std::vector<std::size_t> order(values.size());
  std::iota(order.begin(), order.end(), std::size_t{0});
  std::stable_sort(order.begin(), order.end(),
                   [&](std::size_t a, std::size_t b) { return values[a] < values[b]; });

  Loaded loaded(scenario);
  EXPECT_EQ(loaded.Load(0, 1), kOk);
  ASSERT_EQ(loaded.tuples->size(), order.size());
  for (std::size_t i = 0; i < order.size(); ++i) {
    const BINDataTuple& tuple = (*loaded.tuples)[i];
    ASSERT_EQ(tuple.value, values[order[i]]) << i;
    ASSERT_EQ(std::signbit(tuple.value), std::signbit(values[order[i]])) << i;
    ASSERT_EQ(tuple.target, codes[order[i]]) << i;
    ASSERT_EQ(tuple.weight, 1.0) << i;
  }
  Doubles table;
  const Doubles cuts{-DBL_MAX, -1, DBL_MAX};
  EXPECT_EQ(Text(loaded.set.CreateBinTable(&cuts, true, table)), kOk);
  EXPECT_EQ(std::accumulate(table.begin(), table.end(), 0.0), 5000.0);

  EXPECT_EQ(loaded.LoadWithoutTarget(0), kOk);
  ASSERT_EQ(loaded.efTuples->size(), order.size());
  for (std::size_t i = 0; i < order.size(); ++i) {
    ASSERT_EQ((*loaded.efTuples)[i].value, values[order[i]]) << i;
    ASSERT_EQ(std::signbit((*loaded.efTuples)[i].value), std::signbit(values[order[i]])) << i;
  }
}

// Blocks of valid cases stay where they were read, those of others close ranks. So they do where
// the host has chosen another missing value, be it a zero or one that a case could have.
TEST(BINDataSet, KeepsTheValidCasesOfEveryBlock) {
  constexpr int kBlock = 8192;
  const double usual = MCMV::gMissingValue;
  for (const double missing : {usual, 2.5, 1.0, 0.0, -0.0}) {
    MCMV::gMissingValue = missing;
    for (const double odd : {missing, -missing, kNaN, 1e300, -0.0}) {
      SCOPED_TRACE(testing::Message() << "missing " << missing << ", odd " << odd);
      Doubles values, codes;
      for (int i = 0; i < 4 * kBlock + 100; ++i) {
        values.push_back(i / kBlock == 1 && i % 3 == 0 ? odd : std::sin(i) + 2.0);
        codes.push_back(i / kBlock == 2 && i % 1000 == 0 ? missing : i % 2);
      }
      Scenario scenario;
      scenario.Append(Continuous(values));
      scenario.Append(Categorical(codes, 2, Var::RoleTarget));

      std::vector<std::pair<double, int>> expected, found;
      Doubles expectedValues, foundValues;
      for (std::size_t i = 0; i < values.size(); ++i) {
        if (values[i] == missing || std::isnan(values[i])) continue;
        expectedValues.push_back(values[i]);
        if (codes[i] != missing) expected.emplace_back(values[i], static_cast<int>(codes[i]));
      }
      Loaded loaded(scenario);
      EXPECT_EQ(loaded.Load(0, 1), kOk);
      for (const BINDataTuple& tuple : *loaded.tuples) {
        if (!std::isnan(tuple.value)) found.emplace_back(tuple.value, tuple.target);
      }
      EXPECT_EQ(loaded.LoadWithoutTarget(0), kOk);
      for (const EFBINDataTuple& tuple : *loaded.efTuples) {
        if (!std::isnan(tuple.value)) foundValues.push_back(tuple.value);
      }
      std::sort(expected.begin(), expected.end());
      std::sort(found.begin(), found.end());
      std::sort(expectedValues.begin(), expectedValues.end());
      EXPECT_TRUE(found == expected);
      EXPECT_TRUE(foundValues == expectedValues);
    }
  }
  MCMV::gMissingValue = usual;
}

// Cut points that leave cases over, or bins that no case reaches.
TEST(BINDataSet, HasNoBinTableForCutPointsThatDoNotFit) {
  Scenario scenario;
  scenario.Append(Continuous({5, 9, 1, 5}));
  scenario.Append(Categorical({1, 1, 0, 0}, 2, Var::RoleTarget));
  scenario.Append(Continuous({1, 1, 1, kNaN}));
  Loaded loaded(scenario);
  const auto statusFor = [&](const Doubles& cuts, bool closed) {
    Doubles table;
    return Text(loaded.set.CreateBinTable(&cuts, closed, table));
  };
  EXPECT_EQ(loaded.Load(0, 1), kOk);
  EXPECT_EQ(statusFor({0, 5, 9}, true), kOk) << "the maximum on the closed end";
  EXPECT_EQ(statusFor({7, 10}, true), kOk) << "the first cut point is not compared";
  EXPECT_EQ(statusFor({0, kNaN, 10}, true), kOk);
  EXPECT_EQ(statusFor({0, 5, 9}, false), kMisfit) << "the maximum on the open end";
  for (const Doubles& cuts : {Doubles{0, 1, 20, 30}, {0, 5, kNaN}, {5}, {}}) {
    EXPECT_EQ(statusFor(cuts, true), kMisfit) << testing::PrintToString(cuts);
  }
  Doubles table;
  EXPECT_EQ(Text(loaded.set.CreateBinTable(nullptr, true, table)), kMisfit);
  EXPECT_EQ(loaded.Load(2, 1), kOk);
  EXPECT_EQ(statusFor({-HUGE_VAL, HUGE_VAL}, true), kMisfit) << "a NaN is in no bin";
}

}  // namespace
