#include <gtest/gtest.h>

#include <cmath>
#include <memory>

#include "algorithm/binfactory.h"
#include "algorithm/binsettings.h"
#include "algorithm/efbinfactory.h"
#include "algorithm/efbinsettings.h"
#include "algorithm/ibinalgorithm.h"
#include "algorithm/iefbinalgorithm.h"
#include "output/binoutput.h"
#include "output/efbinoutput.h"
#include "support/agreement.h"
#include "support/hostdoubles.h"
#include "support/rowname.h"
#include "support/scenario.h"
#include "support/tempdir.h"

namespace {

using Rows = std::vector<std::vector<double>>;
using Indices = std::vector<int>;

// The two drivers behind one face, so that both meet the same expectations.
struct Supervised {
  using Settings = BINSettings;
  using Factory = BINFactory;
  using Algorithm = IBINAlgorithm;
  using Results = std::vector<BINAttributeTargetResults>;
  static constexpr bool kHasTarget = true;
  static IBINAlgorithm* Create(BINFactory& factory, BINSettings& settings, BINVarList& list) {
    return factory.CreateBINAlgorithm(settings, list);
  }
  static MCBinning::MCStatus CreateBins(IBINAlgorithm& algorithm, MCCommon::RecordIterator& records,
                                        const Indices* attributes = nullptr,
                                        const Indices* targets = nullptr) {
    return algorithm.CreateBins(records, attributes, targets);
  }
};

struct EqualFrequency {
  using Settings = EFBINSettings;
  using Factory = EFBINFactory;
  using Algorithm = IEFBINAlgorithm;
  using Results = std::vector<BINAttributeResults>;
  static constexpr bool kHasTarget = false;
  static IEFBINAlgorithm* Create(EFBINFactory& factory, EFBINSettings& settings, BINVarList& list) {
    return factory.CreateEFBINAlgorithm(settings, list);
  }
  static MCBinning::MCStatus CreateBins(IEFBINAlgorithm& algorithm,
                                        MCCommon::RecordIterator& records,
                                        const Indices* attributes = nullptr,
                                        const Indices* = nullptr) {
    return algorithm.CreateBins(records, attributes);
  }
};

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

template <class Driver>
class DriverTest : public testing::Test {
 protected:
  DriverTest() {
    settings.SetNumberOfBins(2);
    settings.SetTempDirName(directory.Path());
  }

  void Create(BINVarList list) {
    typename Driver::Factory factory;
    algorithm.reset(Driver::Create(factory, settings, list));
    created = Text(factory.GetStatus());
  }

  void CreateFor(int attributes) { Create(AttributesAndTarget(attributes, Driver::kHasTarget)); }

  std::string CreateBins(MCCommon::RecordIterator& records, const Indices* attributes = nullptr,
                         const Indices* targets = nullptr) {
    return Text(Driver::CreateBins(*algorithm, records, attributes, targets));
  }

  typename Driver::Results Results() const {
    typename Driver::Results results;
    algorithm->GetBinningResults().GetAllCutPoints(results);
    return results;
  }

  // "attribute:status" of every stored result.
  std::vector<std::string> ResultStatuses() const {
    std::vector<std::string> statuses;
    for (const auto& result : Results()) {
      statuses.push_back(std::to_string(result.GetAttributeIndex()) + ':' +
                         Text(result.GetStatus()));
    }
    return statuses;
  }

  TempDir directory;
  typename Driver::Settings settings;
  std::unique_ptr<typename Driver::Algorithm> algorithm;
  std::string created;  // the factory's status
};

template <class Driver>
class BothDrivers : public DriverTest<Driver> {};

using Drivers = testing::Types<Supervised, EqualFrequency>;
TYPED_TEST_SUITE(BothDrivers, Drivers);

TYPED_TEST(BothDrivers, RefuseSettingsWithoutNumberOfBins) {
  this->settings = {};
  this->CreateFor(1);
  RowIterator records(AscendingRows(4, 1));
  EXPECT_EQ(this->CreateBins(records), "120009/-1[0 0 0]");
}

TYPED_TEST(BothDrivers, RefuseListsThatCannotBeUsed) {
  this->Create(AttributesAndTarget(0, true));
  EXPECT_EQ(this->created, "120003/-1[0 -1 0]") << "no attribute";
  for (const int categories : {0, 1}) {
    Scenario scenario;
    scenario.Append(Continuous({}));
    scenario.Append(Categorical({}, categories));
    this->Create(scenario.VarList());
    EXPECT_EQ(this->created, "120003/-1[0 1 0]") << categories << " categories";
    EXPECT_EQ(this->algorithm, nullptr);
  }
  BINVarList list = AttributesAndTarget(1, false);
  list.SetVariableRole(list.AddWeightVar("w", "", IBINVariable::RoundClosest),
                       IBINVariable::RoleTarget);
  this->Create(list);
  RowIterator records(AscendingRows(4, 1));
  EXPECT_EQ(this->CreateBins(records), "120003/-1[0 1 0]") << "weight variable as target";
}

TYPED_TEST(BothDrivers, StopTheProcessWhenARoleHasNoFile) {
  RowIterator records(Rows{{0, 1, 0, 0}});
  const auto run = [&](const BINVarList& list) {
    this->Create(list);
    this->CreateBins(records);
  };
  const char* const message = "src/metadata/bindatapreparator.*fOrigRecSize <= fProcRecSize";
  BINVarList undefinedRole = AttributesAndTarget(2, true);
  undefinedRole.SetVariableRole(1, IBINVariable::RoleUndefined);
  EXPECT_DEATH(run(undefinedRole), message);
  BINVarList twoTargets = AttributesAndTarget(2, true);
  twoTargets.AddCatVar("t", "", 2, IBINVariable::MeasureStringCategorical,
                       IBINVariable::RoleTarget);
  EXPECT_DEATH(run(twoTargets), message);
}

TYPED_TEST(BothDrivers, NeedARecordAndStartAnewAfterAFailedPass) {
  RowIterator none(Rows{});
  RowIterator nothingButNull(Rows(1));
  RowIterator records(AscendingRows(8, 1));
  this->CreateFor(1);
  EXPECT_EQ(this->CreateBins(none), "120004/-1[0 0 0]");
  EXPECT_EQ(this->CreateBins(nothingButNull), "120004/-1[0 0 0]");
  EXPECT_EQ(this->CreateBins(records), "0/0[0 0 0]");
}

TYPED_TEST(BothDrivers, ReadRecordsOnceAndRemoveTheirFiles) {
  this->CreateFor(2);
  RowIterator first(AscendingRows(8, 2));
  RowIterator second(Rows{});
  EXPECT_EQ(this->CreateBins(first), "0/0[0 0 0]");
  EXPECT_EQ(this->CreateBins(second), "0/0[0 0 0]");
  EXPECT_EQ(second.calls, 0);
  const auto results = this->Results();
  ASSERT_EQ(results.size(), 4u);
  EXPECT_EQ(results[3].GetCutPoints(), results[1].GetCutPoints());
  EXPECT_EQ(this->directory.FileCount(), TypeParam::kHasTarget ? 3u : 2u);
  this->algorithm.reset();
  EXPECT_EQ(this->directory.FileCount(), 0u);
}

TYPED_TEST(BothDrivers, StopAtAnyPoll) {
  constexpr int kPolls = 1 + 3 + 1 + 2 * 2 + 1;  // three records, two attributes
  for (int yesAt = 1; yesAt <= kPolls + 1; ++yesAt) {
    SCOPED_TRACE("yes at poll " + std::to_string(yesAt));
    // A query in the settings is asked once by the factory already.
    const int atCreation = yesAt % 2 == 0 ? 1 : 0;
    CountingCancel cancel(yesAt + atCreation);
    this->settings.SetCancelPointer(atCreation == 1 ? &cancel : nullptr);
    this->CreateFor(2);
    if (atCreation == 0) this->algorithm->SetCancelPtr(&cancel);
    RowIterator records(AscendingRows(3, 2));
    const std::string status = this->CreateBins(records);
    EXPECT_EQ(cancel.polls, std::min(yesAt, kPolls) + atCreation);
    EXPECT_EQ(this->Results().size(), yesAt < 7 ? 0u : yesAt < 9 ? 1u : 2u);
    if (yesAt <= kPolls) {
      EXPECT_EQ(status, yesAt == 2 ? "120004/-1[0 0 0]" : "1/-1[0 0 0]");
    }
    EXPECT_EQ(Text(this->algorithm->GetStatus()), "1/-1[0 0 0]");
  }
}

TYPED_TEST(BothDrivers, StopWhenToldByCancel) {
  this->CreateFor(2);
  RowIterator records(AscendingRows(3, 2));
  records.onNext = [&] { this->algorithm->Cancel(); };
  EXPECT_EQ(this->CreateBins(records), "1/-1[0 0 0]");
}

TYPED_TEST(BothDrivers, ReportEveryNthRecordAndEveryAttributeAfterNSkipped) {
  RecordingListener listener;
  this->settings.SetProgressListener(&listener);
  this->settings.SetNSkippedCasesReports(2);
  this->settings.SetNSkippedAttReports(2);
  this->CreateFor(7);
  Rows rows = AscendingRows(5, 7);
  rows[1].clear();  // counts down, but is no record
  RowIterator records(rows);
  this->CreateBins(records);
  EXPECT_EQ(listener.indices, (Indices{1, 3, 2, 5}));

  this->settings.SetNSkippedCasesReports(0);  // reports no records at all
  this->settings.SetProgressListener(nullptr);
  this->CreateFor(7);
  this->algorithm->SetProgressListener(&listener);
  listener.indices.clear();
  RowIterator again(rows);
  this->CreateBins(again);
  EXPECT_EQ(listener.indices, (Indices{2, 5}));
}

TYPED_TEST(BothDrivers, SayWhenFilesCannotBeWritten) {
  const auto run = [&](int count) {
    this->settings.SetTempDirName(this->directory.Path() + "/absent");
    this->CreateFor(1);
    RowIterator records(AscendingRows(count, 1));
    return this->CreateBins(records);
  };
  EXPECT_EQ(run(10000), "120021/-1[0 0 0]") << "noticed when the cache is written";
  EXPECT_EQ(run(9999), "120018/1[0 0 0]") << "noticed when it is read";
  EXPECT_EQ(this->ResultStatuses(), (std::vector<std::string>{"0:120015/1[0 0 0]"}));
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

struct Request {
  const char* name;
  std::optional<Indices> attributes;
  std::optional<Indices> targets;
  std::string status;
  std::vector<std::string> results;
};

void PrintTo(const Request& request, std::ostream* os) { *os << request.name; }

template <class Driver>
class RequestTest : public DriverTest<Driver>, public testing::WithParamInterface<Request> {
 protected:
  void Check() {
    const Request& request = GetParam();
    this->Create(EveryEnd().VarList());
    MCCommon::InMemoryRecordIterator records = EveryEnd().Records();
    EXPECT_EQ(this->CreateBins(records, request.attributes ? &*request.attributes : nullptr,
                               request.targets ? &*request.targets : nullptr),
              request.status);
    EXPECT_EQ(this->ResultStatuses(), request.results);
  }
};

class SupervisedRequest : public RequestTest<Supervised> {};
class EqualFrequencyRequest : public RequestTest<EqualFrequency> {};

TEST_P(SupervisedRequest, EndsWith) { Check(); }
TEST_P(EqualFrequencyRequest, EndsWith) { Check(); }

const std::string kOk = "0/0[0 0 0]";
const std::string kSomePairsNotOk = "120018/1[0 0 0]";

INSTANTIATE_TEST_SUITE_P(
    Requests, SupervisedRequest,
    testing::Values(
        Request{"EveryVariable",
                std::nullopt,
                std::nullopt,
                kSomePairsNotOk,
                {"0:0/0[0 0 0]", "2:120014/1[2 0 0]", "3:120015/1[0 0 0]", "4:120017/1[0 0 0]",
                 "5:120014/1[5 0 0]", "6:0/0[0 0 0]", "7:120012/-1[8 0 0]", "8:120002/1[0 0 0]",
                 "9:120002/1[0 0 0]", "10:120017/1[0 0 0]"}},
        Request{"TargetOfOneCategory",
                Indices{kGood, kConstant},
                Indices{kOneCategory, kOneCategory},
                kSomePairsNotOk,
                {"0:120016/1[5 0 0]", "2:120016/1[5 0 0]"}},
        Request{"UnusableTargets",
                Indices{kGood, kGood},
                Indices{kMoreCodesThanDeclared, kCodeTooLarge},
                kSomePairsNotOk,
                {"0:120010/-1[0 0 0]", "0:120010/-1[0 0 0]"}},
        Request{"RefusedPairsBesideAGoodOne",
                Indices{kWeight, kOutOfRange, kGood, kGood, kGood, kTarget, -1},
                Indices{kTarget, kTarget, kConstant, kOutOfRange, kTarget, kTarget, kTarget},
                kOk,
                {"11:120005/-1[0 0 0]", "12:120013/-1[0 0 0]", "0:120006/-1[0 0 0]",
                 "0:120013/-1[0 0 0]", "0:0/0[0 0 0]"}},
        Request{"RefusedAttributesOnly",
                Indices{kOutOfRange, kWeight, kTarget, -1},
                std::nullopt,
                kOk,
                {"12:120011/-1[0 0 0]", "11:120005/-1[0 0 0]"}},
        Request{"NoUsablePair", Indices{kTarget}, Indices{kTarget}, "120008/-1[0 0 0]", {}},
        Request{"NoAttribute", Indices{}, std::nullopt, "120008/-1[0 0 0]", {}},
        Request{"MorePairsThanTargets",
                Indices{kGood, kUnrelated},
                Indices{kTarget},
                "120008/-1[0 0 0]",
                {}},
        Request{"TargetsAlone", std::nullopt, Indices{kTarget}, "120008/-1[0 0 0]", {}}),
    RowName);

INSTANTIATE_TEST_SUITE_P(
    Requests, EqualFrequencyRequest,
    testing::Values(
        Request{"EveryVariable",
                std::nullopt,
                std::nullopt,
                kSomePairsNotOk,
                {"0:0/0[0 0 0]", "1:0/0[0 0 0]", "2:120014/1[2 0 0]", "3:120015/1[0 0 0]",
                 "4:0/0[0 0 0]", "5:120014/1[5 0 0]", "6:0/0[0 0 0]", "7:120012/-1[8 0 0]",
                 "8:0/0[0 0 0]", "9:0/0[0 0 0]", "10:120019/1[10 0 0]"}},
        Request{"RefusedBesideAGoodOne",
                Indices{kWeight, kOutOfRange, kGood, -1},
                std::nullopt,
                kOk,
                {"11:120005/-1[0 0 0]", "12:120011/-1[0 0 0]", "0:0/0[0 0 0]"}},
        Request{"RefusedOnly", Indices{kWeight, kOutOfRange}, std::nullopt, "120011/-1[0 0 0]", {}},
        Request{"NoAttribute", Indices{}, std::nullopt, "120011/-1[0 0 0]", {}}),
    RowName);

using SupervisedDriver = DriverTest<Supervised>;

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
  settings.SetProgressListener(&listener);
  settings.SetNSkippedAttReports(1);
  Create(EveryEnd().VarList());
  MCCommon::InMemoryRecordIterator records = EveryEnd().Records();
  const Indices attributes{kGood, kCodeTooLarge, kUnrelated, kGood};
  CreateBins(records, &attributes);
  EXPECT_EQ(listener.indices, (Indices{kUnrelated}));
}

}  // namespace
