#include "metadata/bindataset.h"

#include <gtest/gtest.h>

#include <cerrno>
#include <cfloat>
#include <cmath>
#include <filesystem>
#include <numeric>
#include <optional>

#include "common/bincancelinfo.h"
#include "common/missing.h"
#include "metadata/bindatapreparator.h"
#include "support/agreement.h"
#include "support/doublefile.h"
#include "support/libraryfaults.h"
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
const std::string kInvalidTarget = "120010/-1[0 0 0]";

TEST(BINDataSet, KeepsRecordOrderOfEqualValuesAndPutsNaNLast) {
  Scenario scenario;
  scenario.Append(Continuous({0.0, kNaN, -0.0, HUGE_VAL, -std::nan(""), -0.0, -1}));
  scenario.Append(Categorical({1, 2, 3, 4, 5, 6, 7}, 8, Var::RoleTarget));
  Loaded loaded(scenario);
  EXPECT_EQ(loaded.Load(0, 1), kOk);
  EXPECT_EQ(loaded.Targets(), (std::vector<int>{7, 1, 3, 6, 4, 2, 5}));
  EXPECT_EQ(loaded.set.GetNumDistinctValues(), 5u) << "a NaN equals nothing";
}

TEST(BINDataSet, DoesNotReadWhatStoppedAtABadCode) {
  Scenario scenario;
  scenario.Append(Continuous({1, 2, 3}));
  scenario.Append(Categorical({0, 1, 1}, 2, Var::RoleTarget));
  scenario.Append(Categorical({0, 256, 1}, 2));
  scenario.Append(Categorical({0, 1, 2}, 2));  // more codes than declared: whole
  Loaded loaded(scenario);
  EXPECT_EQ(loaded.Load(2, 1), "120012/-1[2 0 0]");
  EXPECT_EQ(loaded.LoadWithoutTarget(2), "120012/-1[2 0 0]");
  EXPECT_EQ(loaded.Load(3, 1), kOk);
  EXPECT_EQ(loaded.LoadWithoutTarget(3), kOk);
  EXPECT_EQ(loaded.set.GetMaximum(), 2);
  for (const unsigned int target : {2u, 3u, 4u, ~0u}) {
    EXPECT_EQ(loaded.Load(0, target), kInvalidTarget) << target;
    EXPECT_EQ(loaded.Load(2, target), kInvalidTarget) << "checked first";
  }
  EXPECT_EQ(loaded.Load(4, 1), "120011/-1[0 0 0]");
  EXPECT_EQ(loaded.LoadWithoutTarget(~0u), "120011/-1[0 0 0]");
  bool valid = true;
  EXPECT_EQ(Text(loaded.set.IsValidTarget(-1, valid)), kInvalidTarget);
  EXPECT_EQ(Text(loaded.set.IsValidTarget(4, valid)), "120013/-1[0 0 0]");
  EXPECT_TRUE(valid) << "left alone";
}

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

// At each file and block of it in turn; the next call then finds everything again. (A read at the
// end of a file takes no values away when it fails.)
TEST(BINDataSet, NoticesAFileThatCannotBeOpenedAndAReadThatFailsHalfWay) {
  Doubles values(10000);
  std::iota(values.begin(), values.end(), 1.0);
  Scenario scenario;
  scenario.Append(Continuous(values));
  scenario.Append(Categorical(Doubles(values.size(), 1), 2, Var::RoleTarget));
  scenario.Append(Weights(values));
  for (const auto call : {libraryfaults::Call::kOpen, libraryfaults::Call::kFread}) {
    bool hasFailed = true;
    int refusals = 0;
    for (int count = 0; hasFailed; ++count) {
      Loaded loaded(scenario);
      testing::internal::CaptureStdout();  // a line for a file that cannot be opened
      std::string status;
      {
        const libraryfaults::Failing failing(call, count, EIO);
        status = loaded.Load(0, 1);
        hasFailed = failing.HasFailed();
      }
      testing::internal::GetCapturedStdout();
      if (status != kOk) {
        ++refusals;
        EXPECT_EQ(status, "120021/-1[0 0 0]") << count;
        EXPECT_EQ(loaded.set.GetNumberOfCases(), 0u) << count;
        EXPECT_EQ(loaded.Load(0, 1), kOk) << count;
      }
      EXPECT_EQ(loaded.set.GetNumberOfCases(), values.size()) << count;
      EXPECT_EQ(loaded.Targets(), std::vector<int>(values.size(), 1)) << count;
      EXPECT_EQ(loaded.set.GetTotalweight(), 50005000.0) << count;
    }
    EXPECT_GE(refusals, call == libraryfaults::Call::kOpen ? 1 : 3);
  }
}

TEST(BINDataSet, OpensAFileAgainThatCouldNotBeOpenedAfterThePass) {
  Scenario scenario;
  scenario.Append(Continuous({1, 2, 3}));
  scenario.Append(Categorical({0, 1, 1}, 2, Var::RoleTarget));
  scenario.Append(Weights({1, 1, 1}));
  constexpr int kFiles = 3;        // each is opened once to be written
  for (const int file : {0, 1}) {  // the target's, the weight's
    testing::internal::CaptureStdout();
    std::optional<libraryfaults::Failing> failing(std::in_place, libraryfaults::Call::kOpen,
                                                  kFiles + file, EMFILE);
    Loaded loaded(scenario);
    EXPECT_TRUE(failing->HasFailed());
    failing.reset();
    testing::internal::GetCapturedStdout();
    EXPECT_EQ(loaded.Load(0, 1), kOk);
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
