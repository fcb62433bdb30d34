// Records by column end as the same records one by one do, in every respect.

#include <gtest/gtest.h>

#include <cmath>
#include <string>
#include <vector>

#include "algorithm/runreport.h"
#include "api/withoutrtti.h"
#include "metadata/columnrecorditerator.h"
#include "support/agreement.h"
#include "support/dice.h"
#include "support/filesizelimit.h"
#include "support/hostdoubles.h"
#include "support/scenarioblocks.h"
#include "support/tempdir.h"
#include "support/wholerun.h"

namespace {

// Reads a column iterator as something that is none.
class OneByOne : public MCCommon::RecordIterator {
 public:
  explicit OneByOne(MCBinning::ColumnRecordIterator& source) : fSource(source) {}
  bool HasMore() override { return fSource.HasMore(); }
  const MCCommon::Record* Next() override { return fSource.Next(); }

 private:
  MCBinning::ColumnRecordIterator& fSource;
};

// But for names of files, which differ from run to run.
std::string TextOf(const MCBinning::RunReport& report) {
  std::string text;
  for (const unsigned long number :
       {static_cast<unsigned long>(report.phase), report.attributeCount, report.attributesDone,
        report.recordsRead, report.recordsStored, report.nullRecords, report.missingWeights,
        report.weightsRoundedToZero, report.nanWeights, report.shortRecord,
        static_cast<unsigned long>(report.tempFile.empty()),
        static_cast<unsigned long>(report.systemError),
        static_cast<unsigned long>(report.isCancelled),
        static_cast<unsigned long>(report.isHostException)}) {
    text += std::to_string(number) + ' ';
  }
  for (const MCBinning::RefusedCode& code : report.refusedCodes) {
    text += std::to_string(code.variable) + ':' + std::to_string(code.record) +
            Text(std::vector<double>{code.code});
  }
  return text + report.exceptionText;
}

// How a scenario is run, and all that comes of it.
struct Road {
  Driver driver;
  std::string directory;
  int recordsPerReport;
};

std::string RunAll(const Road& road, const Scenario& scenario, MCCommon::RecordIterator& records) {
  RecordingListener listener;
  BINVarList variables = scenario.VarList();
  WholeRun run(road.driver, scenario.options, variables, road.directory,
               {&listener, nullptr, road.recordsPerReport, 0});
  if (!run.HasObject()) return Text(run.GetCreated());
  std::string text = Text(run.CreateBins(records));
  text += Text(run.GetStatus()) + '\n' + run.Text() + TextOf(run.GetReport()) + "\nreports";
  for (const int index : listener.indices) text += ' ' + std::to_string(index);
  return text;
}

// Codes that are refused or noted, in some records.
void AddBadCodes(Dice& dice, Scenario& scenario) {
  for (ScenarioVariable& variable : scenario.variables) {
    if (variable.level != IBINVariable::MeasureNumericCategorical || dice.OneIn(2)) continue;
    for (double& value : variable.values) {
      if (!dice.OneIn(30)) continue;
      const double beyond = variable.categories;
      value = dice.OneOf({beyond, beyond + 1, beyond + 1, 255.5, 256.0, -1.5, -2.0, std::nan("")});
    }
  }
}

void ExpectSameByColumn(const Road& road, const Scenario& scenario, std::uint64_t seed,
                        int blockSize) {
  MCCommon::InMemoryRecordIterator rows = scenario.Records();
  const std::string expected = RunAll(road, scenario, rows);
  ScenarioBlocks blocks(scenario, seed, blockSize);
  OneByOne records(blocks);
  ASSERT_EQ(RunAll(road, scenario, records), expected) << "MCBINNING_TEST_SEED=" << seed;
  ScenarioBlocks whole(scenario, seed, blockSize);
  ASSERT_EQ(RunAll(road, scenario, whole), expected) << "MCBINNING_TEST_SEED=" << seed;
}

TEST(Columns, EndAsTheSameRecordsOneByOne) {
  const TempDir directory;
  for (std::uint64_t seed = TestSeed(); seed < TestSeed() + 700; ++seed) {
    Dice dice(seed ^ 0x5eed);
    const bool isLarge = seed % 70 == 0;  // more than the write buffer holds
    Scenario scenario =
        isLarge ? MixedScenario(9990 + dice.Roll(15000)) : RandomScenario(seed, 200, dice.OneIn(2));
    if (dice.OneIn(3)) AddBadCodes(dice, scenario);
    const Road road{dice.OneIn(2) ? Driver::kSupervised : Driver::kEqualFrequency,
                    directory.Path() + (dice.OneIn(isLarge ? 2 : 10) ? "/missing" : ""),
                    dice.OneOf({1, 7, 5000, 0, -1})};
    ExpectSameByColumn(road, scenario, seed, dice.OneOf({1, 10, 100, 30000}));
  }
}

// Weights that are dropped or not there, codes where a file stops, and a disk that is full soon.
TEST(Columns, EndAsTheSameRecordsWhenTheyFillTheWriteBuffer) {
  const TempDir directory;
  for (std::uint64_t seed = TestSeed(); seed < TestSeed() + 30; ++seed) {
    Dice dice(seed ^ 0xb1f);
    Scenario scenario = MixedScenario(10000 * (1 + dice.Roll(3)) + dice.OneOf({0, 0, 77}));
    std::vector<double>& weights = scenario.variables.back().values;
    const int weighting = dice.Roll(3);
    if (weighting == 0) scenario.variables.pop_back();
    if (weighting == 1) weights[static_cast<std::size_t>(dice.Roll(10000))] = 0.0;
    if (dice.OneIn(4)) AddBadCodes(dice, scenario);
    const Road road{dice.OneIn(2) ? Driver::kSupervised : Driver::kEqualFrequency, directory.Path(),
                    dice.OneOf({0, 0, 10000, 20001})};
    const int unlimited = 1 << 30;
    const FileSizeLimit disk(
        static_cast<rlim_t>(dice.OneOf({unlimited, unlimited, 80000, 90000, 200000})));
    ExpectSameByColumn(road, scenario, seed, 200000);
  }
}

TEST(Columns, EndEarlyAsTheSameRecordsDo) {
  const TempDir directory;
  const Scenario scenario = MixedScenario(12000);
  for (const std::size_t last : std::vector<std::size_t>{0, 1, 777, 9999, 10000, 11999}) {
    const auto runWith = [&](bool byColumn, const auto& prepare) {
      ScenarioBlocks blocks(scenario, last, 4000);
      prepare(blocks);
      OneByOne records(blocks);
      return RunAll({Driver::kSupervised, directory.Path(), 500}, scenario,
                    byColumn ? static_cast<MCCommon::RecordIterator&>(blocks) : records);
    };
    const auto shorten = [&](ScenarioBlocks& blocks) { blocks.shortFrom = last; };
    EXPECT_EQ(runWith(true, shorten), runWith(false, shorten)) << last;
    const auto fail = [&](ScenarioBlocks& blocks) {
      blocks.onBlock = [&] {
        if (blocks.blocks == static_cast<int>(last % 7)) throw std::runtime_error("the tape");
      };
    };
    EXPECT_EQ(runWith(true, fail), runWith(false, fail)) << last;
  }
}

// Says that it has columns and where they are not.
class AbsentColumns : public MCBinning::ColumnRecordIterator {
 protected:
  MCBinning::RecordBlock NextBlock() override { return {3, nullptr, 2}; }
};

TEST(Columns, ThatAreNotThereAreNone) {
  const TempDir directory;
  Scenario scenario;
  scenario.Append(Continuous({1, 2, 3}));
  scenario.Append(Categorical({0, 0, 1}, 2, IBINVariable::RoleTarget));
  BINVarList variables = scenario.VarList();
  for (const bool byColumn : {false, true}) {
    WholeRun run(Driver::kSupervised, scenario.options, variables, directory.Path());
    AbsentColumns blocks;
    OneByOne records(blocks);
    const MCBinning::MCStatus status = byColumn ? run.CreateBins(blocks) : run.CreateBins(records);
    EXPECT_EQ(status.GetErrorCode(), 120003);
  }
}

// What was read one by one before is not read again.
TEST(Columns, GoOnWhereRecordsWereRead) {
  const TempDir directory;
  const Scenario scenario = MixedScenario(300);
  Scenario later = scenario;
  for (ScenarioVariable& variable : later.variables) {
    variable.values.erase(variable.values.begin(), variable.values.begin() + 40);
  }
  const Road road{Driver::kEqualFrequency, directory.Path(), 7};
  MCCommon::InMemoryRecordIterator rows = later.Records();
  const std::string expected = RunAll(road, scenario, rows);
  for (std::uint64_t seed = 1; seed <= 6; ++seed) {
    ScenarioBlocks begun(scenario, seed, 100);
    for (int i = 0; i < 40; ++i) begun.Next();
    EXPECT_EQ(RunAll(road, scenario, begun), expected) << seed;
  }
}

TEST(Columns, PollOnceABlock) {
  const TempDir directory;
  const Scenario scenario = MixedScenario(25000);
  for (const Driver driver : kDrivers) {
    int polls = 0;
    for (int yesAtPoll = CountingCancel::kNever; polls == 0 || yesAtPoll < polls; ++yesAtPoll) {
      CountingCancel query(yesAtPoll);
      BINVarList variables = scenario.VarList();
      WholeRun run(driver, scenario.options, variables, directory.Path(), {nullptr, &query, 0, 0});
      ScenarioBlocks blocks(scenario, 5, 6000);
      const MCBinning::MCStatus status =
          run.HasObject() ? run.CreateBins(blocks) : run.GetCreated();
      if (yesAtPoll == CountingCancel::kNever) {
        const int attributes = driver == Driver::kSupervised ? 3 : 4;
        polls = query.polls;
        EXPECT_EQ(polls, 1 + 1 + (blocks.blocks - 1) + 1 + 2 * attributes + 1);
        yesAtPoll = 0;
        continue;
      }
      EXPECT_EQ(status.GetErrorCode(), yesAtPoll == 3 ? 120004 : 1) << yesAtPoll;
      EXPECT_EQ(query.polls, yesAtPoll);
    }
  }
  EXPECT_EQ(directory.FileCount(), 0u);
}

TEST(Columns, AreNotAskedForWhereAClassCannotTellWhatItIs) {
  const TempDir directory;
  Scenario scenario;
  scenario.Append(Continuous({1, 2, 3, 4}));
  scenario.Append(Categorical({0, 0, 1, 1}, 2, IBINVariable::RoleTarget));
  for (const Driver driver : kDrivers) {
    const Road road{driver, directory.Path(), 1};
    MCCommon::InMemoryRecordIterator rows = scenario.Records();
    const std::string expected = RunAll(road, scenario, rows);
    EXPECT_EQ(RunAll(road, scenario, *MakeRecordsWithoutRtti()), expected);
    EXPECT_EQ(RunAll(road, scenario, *MakeColumnsWithoutRtti()), expected);
  }
}

}  // namespace
