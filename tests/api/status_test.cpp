#include <gtest/gtest.h>

#include <cerrno>
#include <cmath>
#include <optional>

#include "support/agreement.h"
#include "support/hostdoubles.h"
#include "support/scenario.h"
#include "support/tempdir.h"
#include "support/wholerun.h"

namespace {

using Rows = std::vector<std::vector<double>>;
using Indices = std::vector<int>;

// Attributes first, then the target.
BINVarList AttributesAndTarget(int attributes, bool hasTarget) {
  Scenario scenario;
  for (int i = 0; i < attributes; ++i) scenario.Append(Continuous({}));
  if (hasTarget) scenario.Append(Categorical({}, 2, IBINVariable::RoleTarget));
  return scenario.VarList();
}

// The same value in every attribute, and its half of the data as target.
Rows AscendingRows(int count, int attributes) {
  Rows rows;
  for (int i = 0; i < count; ++i) {
    rows.emplace_back(static_cast<std::size_t>(attributes), i);
    rows.back().push_back(i < count / 2 ? 0 : 1);
  }
  return rows;
}

class DriverTest : public testing::Test {
 protected:
  explicit DriverTest(Driver kind) : driver(kind) { options.numberOfBins = 2; }

  void Create(BINVarList list) {
    run.emplace(driver, options, list, directory.Path() + subdirectory, callbacks);
  }

  void CreateFor(int attributes) {
    Create(AttributesAndTarget(attributes, driver == Driver::kSupervised));
  }

  std::string CreateBins(MCCommon::RecordIterator& records, const Indices* attributes = nullptr,
                         const Indices* targets = nullptr) {
    return Text(run->CreateBins(records, attributes, targets));
  }

  // "attribute:status" of every stored result.
  std::vector<std::string> ResultStatuses() const {
    std::vector<std::string> statuses;
    for (const StoredResult& result : run->GetResults()) {
      statuses.push_back(std::to_string(result.attribute) + ':' + Text(result.binning.status));
    }
    return statuses;
  }

  const Driver driver;
  TempDir directory;
  std::string subdirectory;
  reference::Options options;
  Callbacks callbacks;
  std::optional<WholeRun> run;
};

class BothDrivers : public DriverTest, public testing::WithParamInterface<Driver> {
 protected:
  BothDrivers() : DriverTest(GetParam()) {}
};

INSTANTIATE_TEST_SUITE_P(Drivers, BothDrivers, testing::ValuesIn(kDrivers),
                         testing::PrintToStringParamName());

TEST_P(BothDrivers, RefuseSettingsWithoutNumberOfBins) {
  options.numberOfBins = -1;
  CreateFor(1);
  RowIterator records(AscendingRows(4, 1));
  EXPECT_EQ(CreateBins(records), "120009/-1[0 0 0]");
}

TEST_P(BothDrivers, RefuseListsThatCannotBeUsed) {
  Create(AttributesAndTarget(0, true));
  EXPECT_EQ(Text(run->GetCreated()), "120003/-1[0 -1 0]") << "no attribute";
  for (const int categories : {0, 1}) {
    Scenario scenario;
    scenario.Append(Continuous({}));
    scenario.Append(Categorical({}, categories));
    Create(scenario.VarList());
    EXPECT_EQ(Text(run->GetCreated()), "120003/-1[0 1 0]") << categories << " categories";
    EXPECT_FALSE(run->HasObject());
  }
  BINVarList list = AttributesAndTarget(1, false);
  list.SetVariableRole(list.AddWeightVar("w", "", IBINVariable::RoundClosest),
                       IBINVariable::RoleTarget);
  Create(list);
  RowIterator records(AscendingRows(4, 1));
  EXPECT_EQ(CreateBins(records), "120003/-1[0 1 0]") << "weight variable as target";
}

TEST_P(BothDrivers, StopTheProcessWhenARoleHasNoFile) {
  RowIterator records(Rows{{0, 1, 0, 0}});
  const auto binWith = [&](const BINVarList& list) {
    Create(list);
    CreateBins(records);
  };
  const char* const message = "src/metadata/bindatapreparator.*fOrigRecSize <= fProcRecSize";
  BINVarList undefinedRole = AttributesAndTarget(2, true);
  undefinedRole.SetVariableRole(1, IBINVariable::RoleUndefined);
  EXPECT_DEATH(binWith(undefinedRole), message);
  BINVarList twoTargets = AttributesAndTarget(2, true);
  twoTargets.AddCatVar("t", "", 2, IBINVariable::MeasureStringCategorical,
                       IBINVariable::RoleTarget);
  EXPECT_DEATH(binWith(twoTargets), message);
}

TEST_P(BothDrivers, NeedARecordAndStartAnewAfterAFailedPass) {
  RowIterator none(Rows{});
  RowIterator nothingButNull(Rows(1));
  RowIterator records(AscendingRows(8, 1));
  CreateFor(1);
  EXPECT_EQ(CreateBins(none), "120004/-1[0 0 0]");
  EXPECT_EQ(CreateBins(nothingButNull), "120004/-1[0 0 0]");
  EXPECT_EQ(CreateBins(records), "0/0[0 0 0]");
}

TEST_P(BothDrivers, ReadRecordsOnceAndRemoveTheirFiles) {
  CreateFor(2);
  RowIterator first(AscendingRows(8, 2));
  RowIterator second(Rows{});
  EXPECT_EQ(CreateBins(first), "0/0[0 0 0]");
  EXPECT_EQ(CreateBins(second), "0/0[0 0 0]");
  EXPECT_EQ(second.calls, 0);
  const auto results = run->GetResults();
  ASSERT_EQ(results.size(), 4u);
  EXPECT_EQ(results[3].binning.cutPoints, results[1].binning.cutPoints);
  EXPECT_EQ(directory.FileCount(), driver == Driver::kSupervised ? 3u : 2u);
  run.reset();
  EXPECT_EQ(directory.FileCount(), 0u);
}

TEST_P(BothDrivers, StopAtAnyPoll) {
  constexpr int kPolls = 1 + 3 + 1 + 2 * 2 + 1;  // three records, two attributes
  for (int yesAt = 1; yesAt <= kPolls + 1; ++yesAt) {
    SCOPED_TRACE("yes at poll " + std::to_string(yesAt));
    // A query in the settings is asked once by the factory already.
    const int atCreation = yesAt % 2 == 0 ? 1 : 0;
    CountingCancel cancel(yesAt + atCreation);
    callbacks.query = atCreation == 1 ? &cancel : nullptr;
    CreateFor(2);
    if (atCreation == 0) run->SetCancelPtr(&cancel);
    RowIterator records(AscendingRows(3, 2));
    const std::string status = CreateBins(records);
    EXPECT_EQ(cancel.polls, std::min(yesAt, kPolls) + atCreation);
    EXPECT_EQ(run->GetResults().size(), yesAt < 7 ? 0u : yesAt < 9 ? 1u : 2u);
    if (yesAt <= kPolls) {
      EXPECT_EQ(status, yesAt == 2 ? "120004/-1[0 0 0]" : "1/-1[0 0 0]");
    }
    EXPECT_EQ(Text(run->GetStatus()), "1/-1[0 0 0]");
  }
}

TEST_P(BothDrivers, ReportEveryNthRecordAndEveryAttributeAfterNSkipped) {
  Rows rows = AscendingRows(5, 7);
  rows[1].clear();  // counts down, but is no record
  for (const auto& [interval, indices] :
       {std::pair(0, Indices{2, 5}),  // of attributes alone
        std::pair(1, Indices{1, 1, 2, 3, 4, 2, 5}), std::pair(2, Indices{1, 3, 2, 5})}) {
    RecordingListener listener;
    const bool isInSettings = interval != 2;
    callbacks = {isInSettings ? &listener : nullptr, nullptr, interval, 2};
    CreateFor(7);
    if (!isInSettings) run->SetProgressListener(&listener);
    RowIterator records(rows);
    CreateBins(records);
    EXPECT_EQ(listener.indices, indices) << "every record of " << interval;
  }
}

TEST_P(BothDrivers, SayWhenFilesCannotBeWritten) {
  subdirectory = "/absent";
  const auto binRecords = [&](int count) {
    CreateFor(1);
    RowIterator records(AscendingRows(count, 1));
    return CreateBins(records);
  };
  EXPECT_EQ(binRecords(10000), "120021/-1[0 0 0]") << "noticed when the cache is written";
  EXPECT_EQ(run->GetReport().tempFile.rfind(directory.Path() + subdirectory, 0), 0u);
  EXPECT_EQ(run->GetReport().systemError, ENOENT);
  EXPECT_EQ(binRecords(9999), "120018/1[0 0 0]") << "noticed when it is read";
  EXPECT_EQ(ResultStatuses(), (std::vector<std::string>{"0:120015/1[0 0 0]"}));
}

// One variable for every way to end: the index of each is its name's.
enum Variable {
  kGood,
  kTarget,
  kConstant,
  kAllMissing,
  kUnrelated,
  kOneCategory,
  kMoreCodesThanDeclared,
  kCodeTooLarge,
  kNotANumber,
  kInfinite,
  kHeavyMaximum,
  kWeight,
  kOutOfRange
};

Scenario EveryEnd() {
  const double m = reference::kMissing;
  Scenario scenario;
  scenario.Append(Continuous({1, 2, 3, 4, 5, 6, 7, 8}));
  scenario.Append(Categorical({0, 0, 0, 0, 1, 1, 1, 1}, 2, IBINVariable::RoleTarget));
  scenario.Append(Continuous({5, 5, 5, 5, 5, 5, 5, 5}));
  scenario.Append(Continuous({m, m, m, m, m, m, m, m}));
  scenario.Append(Continuous({1, 2, 1, 2, 1, 2, 1, 2}));
  scenario.Append(Categorical({0, 0, 0, 0, 0, 0, 0, 0}, 2));
  scenario.Append(Categorical({0, 0, 0, 0, 1, 1, 2, 2}, 2));
  scenario.Append(Categorical({0, 0, 0, 256, 1, 1, 1, 1}, 2));
  scenario.Append(Continuous({1, 2, 3, 4, 5, 6, 7, std::nan("")}));
  scenario.Append(Continuous({1, 2, 3, 4, 5, 6, 7, HUGE_VAL}));
  scenario.Append(Continuous({1, 2, 2, 2, 2, 2, 2, 2}));
  scenario.Append(Weights({2, 2, 2, 2, 2, 2, 2, 2}));
  return scenario;
}

const std::string kOk = "0/0[0 0 0]";
const std::string kSomePairsNotOk = "120018/1[0 0 0]";

struct Request {
  const char* name;
  std::optional<Indices> attributes;
  std::optional<Indices> targets;
  std::string status;
  std::vector<std::string> results;
};

const Request kSupervised[] = {
    {"EveryVariable",
     {},
     {},
     kSomePairsNotOk,
     {"0:0/0[0 0 0]", "2:120014/1[2 0 0]", "3:120015/1[0 0 0]", "4:120017/1[0 0 0]",
      "5:120014/1[5 0 0]", "6:0/0[0 0 0]", "7:120012/-1[8 0 0]", "8:120002/1[0 0 0]",
      "9:120002/1[0 0 0]", "10:120017/1[0 0 0]"}},
    {"TargetOfOneCategory",
     Indices{kGood, kConstant},
     Indices{kOneCategory, kOneCategory},
     kSomePairsNotOk,
     {"0:120016/1[5 0 0]", "2:120016/1[5 0 0]"}},
    {"UnusableTargets",
     Indices{kGood, kGood},
     Indices{kMoreCodesThanDeclared, kCodeTooLarge},
     kSomePairsNotOk,
     {"0:120010/-1[0 0 0]", "0:120010/-1[0 0 0]"}},
    {"RefusedPairsBesideAGoodOne",
     Indices{kWeight, kOutOfRange, kGood, kGood, kGood, kTarget, -1},
     Indices{kTarget, kTarget, kConstant, kOutOfRange, kTarget, kTarget, kTarget},
     kOk,
     {"11:120005/-1[0 0 0]", "12:120013/-1[0 0 0]", "0:120006/-1[0 0 0]", "0:120013/-1[0 0 0]",
      "0:0/0[0 0 0]"}},
    {"RefusedAttributesOnly",
     Indices{kOutOfRange, kWeight, kTarget, -1},
     {},
     kOk,
     {"12:120011/-1[0 0 0]", "11:120005/-1[0 0 0]"}},
    {"NoUsablePair", Indices{kTarget}, Indices{kTarget}, "120008/-1[0 0 0]", {}},
    {"NoAttribute", Indices{}, {}, "120008/-1[0 0 0]", {}},
    {"MorePairsThanTargets", Indices{kGood, kUnrelated}, Indices{kTarget}, "120008/-1[0 0 0]", {}},
    {"TargetsAlone", {}, Indices{kTarget}, "120008/-1[0 0 0]", {}}};

const Request kEqualFrequency[] = {
    {"EveryVariable",
     {},
     {},
     kSomePairsNotOk,
     {"0:0/0[0 0 0]", "1:0/0[0 0 0]", "2:120014/1[2 0 0]", "3:120015/1[0 0 0]", "4:0/0[0 0 0]",
      "5:120014/1[5 0 0]", "6:0/0[0 0 0]", "7:120012/-1[8 0 0]", "8:0/0[0 0 0]", "9:0/0[0 0 0]",
      "10:120019/1[10 0 0]"}},
    {"RefusedBesideAGoodOne",
     Indices{kWeight, kOutOfRange, kGood, -1},
     {},
     kOk,
     {"11:120005/-1[0 0 0]", "12:120011/-1[0 0 0]", "0:0/0[0 0 0]"}},
    {"RefusedOnly", Indices{kWeight, kOutOfRange}, {}, "120011/-1[0 0 0]", {}},
    {"NoAttribute", Indices{}, {}, "120011/-1[0 0 0]", {}}};

TEST_P(BothDrivers, EndEveryRequestWithItsStatus) {
  const auto end = [this](const auto& requests) {
    for (const auto& [name, attributes, targets, status, results] : requests) {
      SCOPED_TRACE(name);
      Create(EveryEnd().VarList());
      MCCommon::InMemoryRecordIterator records = EveryEnd().Records();
      EXPECT_EQ(
          CreateBins(records, attributes ? &*attributes : nullptr, targets ? &*targets : nullptr),
          status);
      EXPECT_EQ(ResultStatuses(), results);
    }
  };
  driver == Driver::kSupervised ? end(kSupervised) : end(kEqualFrequency);
}

class SupervisedDriver : public DriverTest {
 protected:
  SupervisedDriver() : DriverTest(Driver::kSupervised) {}
};

TEST_F(SupervisedDriver, NeedsATargetWithCodesInRange) {
  RowIterator withoutTarget(AscendingRows(4, 1));
  Create(AttributesAndTarget(1, false));
  EXPECT_EQ(CreateBins(withoutTarget), "120010/-1[0 0 0]");
  const Indices attributes{0};
  EXPECT_EQ(CreateBins(withoutTarget, &attributes), kSomePairsNotOk) << "no record can hold it";

  const Rows rows{{1, 0, 0}, {2, 256, 0}, {3, 1, 1}};
  RowIterator onlyCategorical(rows);
  CreateFor(1);
  EXPECT_EQ(CreateBins(onlyCategorical), "120012/-1[1 0 0]");

  RowIterator oneOfTwoCategorical(rows);
  BINVarList list = AttributesAndTarget(1, true);
  list.AddCatVar("c", "", 2, IBINVariable::MeasureNumericCategorical, IBINVariable::RoleAttribute);
  Create(list);
  EXPECT_EQ(CreateBins(oneOfTwoCategorical), "120010/-1[0 0 0]");
}

TEST_F(SupervisedDriver, NeitherReportsAnErrorNorCountsItAsSkipped) {
  RecordingListener listener;
  callbacks = {&listener, nullptr, 0, 1};
  Create(EveryEnd().VarList());
  MCCommon::InMemoryRecordIterator records = EveryEnd().Records();
  const Indices attributes{kGood, kCodeTooLarge, kUnrelated, kGood};
  CreateBins(records, &attributes);
  EXPECT_EQ(listener.indices, (Indices{kUnrelated}));
}

}  // namespace
