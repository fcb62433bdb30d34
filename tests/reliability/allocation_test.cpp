// Memory that runs out, at whichever allocation of a run, and memory that must not pile up.

#include <gtest/gtest.h>
#include <malloc.h>

#include <filesystem>
#include <memory>
#include <new>
#include <optional>
#include <set>
#include <string>
#include <tuple>
#include <utility>
#include <vector>

#include "algorithm/binalgorithm.h"
#include "metadata/bincatnumencoder.h"
#include "metadata/binstringencoder.h"
#include "reliability/countedmemory.h"
#include "support/agreement.h"
#include "support/scenarioblocks.h"
#include "support/tempdir.h"
#include "support/wholerun.h"

namespace {

using counted_memory::Failing;
using counted_memory::Failure;

const std::string kOutOfMemory = "3/-1[0 0 0]";

class Allocation : public testing::TestWithParam<Driver> {
 protected:
  TempDir directory;
  const Scenario scenario = MixedScenario(40);
  BINVarList variables = scenario.VarList();
  MCCommon::InMemoryRecordIterator records = scenario.Records();
};

// Makes allocation number `count` of `attempt` fail, and tells whether there was one. What is made
// there may throw, as any host's object may.
template <typename Attempt>
bool FailAllocationIn(const Attempt& attempt, std::size_t count) {
  const Failing failing(count, Failure::kOnce);
  try {
    attempt();
  } catch (const std::bad_alloc&) {
  }
  return failing.HasFailed();
}

// Makes allocation number `count` of a run fail, and tells whether there was one. The run ends
// with error 3, or as if nothing had happened where there is a way round (a smaller buffer).
bool FailAllocationOfRun(WholeRun& run, MCCommon::RecordIterator& records, std::size_t count,
                         Failure failure, const std::string& expected) {
  MCBinning::MCStatus status;
  bool hasFailed = false;
  {
    const Failing failing(count, failure);
    status = run.CreateBins(records);
    if (!status.IsError()) status = run.ReadResults();
    hasFailed = failing.HasFailed();
  }
  if (status.IsError()) {
    EXPECT_EQ(Text(status), kOutOfMemory);
  } else {
    EXPECT_EQ(run.Text(), expected);
  }
  return hasFailed;
}

// Without weights, and with enough records for few different values to be counted.
Scenario CountedScenario() {
  Scenario scenario = MixedScenario(1100);
  scenario.variables.pop_back();
  scenario.options.distinctThreshold = 200;
  return scenario;
}

class RunAllocations : public testing::TestWithParam<std::tuple<Driver, bool>> {};

TEST_P(RunAllocations, FailingAnywhereIsStatus3AndTheObjectWorksAgain) {
  const auto [driver, isCounted] = GetParam();
  const TempDir directory;
  const Scenario scenario = isCounted ? CountedScenario() : MixedScenario(40);
  BINVarList variables = scenario.VarList();
  MCCommon::InMemoryRecordIterator records = scenario.Records();
  // From the first one, by record or by column.
  const auto makeRecords = [&](bool byColumn) -> std::unique_ptr<MCCommon::RecordIterator> {
    if (byColumn) return std::make_unique<ScenarioBlocks>(scenario, 3, 15);
    return std::make_unique<MCCommon::InMemoryRecordIterator>(scenario.Records());
  };
  std::string expected;
  std::size_t resultCount = 0;
  {
    WholeRun run(driver, scenario.options, variables, directory.Path());
    run.CreateBins(records);
    expected = run.Text();
    resultCount = run.GetResults().size();
  }
  for (const auto& [failure, byColumn] :
       {std::pair(Failure::kOnce, false), std::pair(Failure::kForGood, false),
        std::pair(Failure::kOnce, true), std::pair(Failure::kForGood, true)}) {
    bool hasFailed = true;
    std::size_t count = 0;
    for (; hasFailed; ++count) {
      SCOPED_TRACE(count);
      const std::size_t live = counted_memory::Live();
      {
        WholeRun run(driver, scenario.options, variables, directory.Path());
        hasFailed = FailAllocationOfRun(run, *makeRecords(byColumn), count, failure, expected);
        if (hasFailed) {
          EXPECT_FALSE(run.CreateBins(*makeRecords(byColumn)).IsError());
        }
        EXPECT_EQ(run.Text(resultCount), expected);
      }
      EXPECT_EQ(counted_memory::Live(), live);
      EXPECT_EQ(directory.FileCount(), 0u);
      if (HasFailure()) return;
    }
    EXPECT_GT(count, 50u);
  }
}

INSTANTIATE_TEST_SUITE_P(Drivers, RunAllocations,
                         testing::Combine(testing::ValuesIn(kDrivers), testing::Bool()));

TEST_P(Allocation, FailingAnywhereInTheFactoryIsStatus3) {
  bool hasFailed = true;
  std::size_t count = 0;
  for (; hasFailed; ++count) {
    const std::size_t live = counted_memory::Live();
    std::optional<WholeRun> run;
    hasFailed = FailAllocationIn(
        [&] { run.emplace(GetParam(), scenario.options, variables, directory.Path()); }, count);
    if (run && hasFailed) {
      EXPECT_EQ(Text(run->GetCreated()), kOutOfMemory) << count;
    }
    run.reset();
    EXPECT_EQ(counted_memory::Live(), live) << count;
  }
  EXPECT_GT(count, 5u);
}

TEST_P(Allocation, NothingPilesUpOverAThousandRuns) {
  const auto runOnce = [this] {
    WholeRun run(GetParam(), scenario.options, variables, directory.Path());
    records.Rewind();
    EXPECT_FALSE(run.CreateBins(records).IsError());
  };
  const auto openFiles = [] {
    const std::filesystem::directory_iterator files("/proc/self/fd");
    return std::distance(begin(files), end(files));
  };
  runOnce();
  const std::size_t live = counted_memory::Live();
  const auto files = openFiles();
  const std::size_t heap = mallinfo2().uordblks;
  for (int i = 0; i < 1000; ++i) runOnce();
  EXPECT_EQ(counted_memory::Live(), live);
  EXPECT_EQ(openFiles(), files);
  EXPECT_LE(mallinfo2().uordblks, heap + 4096) << "of the C library's own";
}

INSTANTIATE_TEST_SUITE_P(Drivers, Allocation, testing::ValuesIn(kDrivers),
                         testing::PrintToStringParamName());

// A search of its own within a large table: sums of all rows would take far longer than it does.
TEST(SplitSearch, OfFewRowsKeepsNothingOfTheOthers) {
  constexpr int kRows = 100000;
  std::vector<double> table(2 * kRows, 1.0);
  BINSettings settings;
  BINVarList list;
  const BINAlgorithm algorithm(settings, list);
  std::vector<double> left(3);
  std::vector<double> right{20, 10, 10};
  const auto search = [&] { algorithm.FindBestCutPoint(&table, 50000, 50009, &left, &right); };
  EXPECT_FALSE(FailAllocationIn(search, 1)) << "one allocation keeps the interval's weights";
}

// The steps of a run by themselves, on what a run that ended early has left.
TEST(Steps, HaveAllCasesOrNoneAfterMemoryRanOut) {
  const TempDir directory;
  for (const auto& [cases, distinct, categories] :
       {std::tuple(60, 60, 3), {60, 60, 8}, {1100, 20, 3}, {1100, 20, 8}}) {
    std::vector<double> values;
    std::vector<double> codes;
    for (int i = 0; i < cases; ++i) {
      values.push_back(i * 37 % distinct);
      codes.push_back(i * 37 % distinct * categories / distinct);
    }
    Scenario scenario;
    scenario.Append(Continuous(values));
    scenario.Append(Categorical(codes, categories, IBINVariable::RoleTarget));
    BINVarList variables = scenario.VarList();
    BINSettings settings;
    settings.SetTempDirName(directory.Path());
    settings.SetNumberOfBins(10);
    const std::vector<BINDataTuple> tuples(static_cast<std::size_t>(cases));
    std::vector<std::string> texts;
    bool hasFailed = true;
    for (std::size_t count = 0; hasFailed; ++count) {
      MCCommon::InMemoryRecordIterator records = scenario.Records();
      BINAlgorithm algorithm(settings, variables);
      hasFailed = FailAllocationIn([&] { algorithm.CreateBins(records, nullptr, nullptr); }, count);
      std::set<double> cuts;
      std::vector<double> counts;
      double entropy = 0.0;
      const MCBinning::MCStatus status = algorithm.MDLP(&tuples, cuts, counts, entropy);
      if (status.IsError()) {
        EXPECT_EQ(status.GetErrorCode(), 120002) << count;
      } else {
        texts.push_back(Text(counts));
      }
    }
    ASSERT_GT(texts.size(), 5u);
    for (const std::string& text : texts) EXPECT_EQ(text, texts.back());
  }
}

// What a host builds may throw, but neither leaks nor is left half-made.
TEST(VariableList, StaysAsItWasWhenMemoryRunsOut) {
  const Scenario scenario = MixedScenario(1);
  bool hasFailed = true;
  for (std::size_t count = 0; hasFailed; ++count) {
    const std::size_t live = counted_memory::Live();
    const auto makeLists = [&] {
      BINVarList list = scenario.VarList();
      const BINVarList copy = list;
      list.AddDiscreteUserMissing(0, -1.0, "none");
      list.SetMissingInterval(0, 5.0, 6.0);
    };
    hasFailed = FailAllocationIn(makeLists, count);
    EXPECT_EQ(counted_memory::Live(), live) << count;
  }
}

template <typename Encoder, typename Value>
void ExpectNothingHalfEncoded(const Value& known, const Value& added, const Value& another) {
  bool hasFailed = true;
  std::size_t count = 0;
  for (; hasFailed; ++count) {
    SCOPED_TRACE(count);
    Encoder encoder(std::vector<Value>{known});
    hasFailed = FailAllocationIn([&] { encoder.Encode(added); }, count);
    EXPECT_EQ(encoder.EncodeConst(added), hasFailed ? -1 : 1);
    const int next = hasFailed ? 1 : 2;
    EXPECT_EQ(encoder.Encode(another), next);
    EXPECT_EQ(encoder.Decode(next), another);
  }
  EXPECT_GT(count, 2u);
}

TEST(Encoders, StayAsTheyWereWhenMemoryRunsOut) {
  ExpectNothingHalfEncoded<BINCatNumEncoder>(0.5, 2.5, 1.5);
  ExpectNothingHalfEncoded<BINStringEncoder>(std::string("a"), std::string(100, 'b'),
                                             std::string("c"));
}

}  // namespace
