#include "binmodel/run/binrun.h"

#include <gtest/gtest.h>

#include <cmath>
#include <functional>
#include <limits>
#include <numeric>
#include <ostream>
#include <random>
#include <stdexcept>
#include <string>
#include <thread>
#include <utility>
#include <vector>

#include "binmodel/apply/bincounter.h"
#include "binmodel/file/binfile.h"
#include "binmodel/model/refusal.h"
#include "binmodel/run/memorycolumns.h"
#include "support/rowname.h"
#include "support/scenario.h"
#include "support/tempdir.h"

namespace {

using MCBinModel::Algorithm;
using MCBinModel::BinModel;
using MCBinModel::BinSettings;
using MCBinModel::MemoryColumns;
using MCBinModel::Refusal;
using MCBinModel::RefusalCode;
using MCBinModel::RunControl;
using MCBinModel::RunVariables;

constexpr double kNaN = std::numeric_limits<double>::quiet_NaN();
constexpr double kInfinity = std::numeric_limits<double>::infinity();

// Columns in memory and the run over them.
class Data {
 public:
  explicit Data(std::size_t recordCount) : fColumns(recordCount) {}

  void AddAttribute(const std::string& name, std::vector<double> values) {
    fRun.attributes.emplace_back().name = name;
    fRun.attributeColumns.push_back(Add(std::move(values)));
  }

  // Of the classes 0, 1, ... .
  void AddTarget(const std::string& name, int classCount, std::vector<double> values) {
    MCBinModel::VariableInfo& target = fRun.targets.emplace_back();
    target.name = name;
    target.kind = MCBinModel::VariableKind::kNumericCategorical;
    for (int code = 0; code < classCount; ++code) target.numbers.push_back(code);
    fRun.targetColumns.push_back(Add(std::move(values)));
  }

  void SetWeight(std::vector<double> values) {
    fRun.weight = {{"w", IBINVariable::RoundClosest, {}}, Add(std::move(values))};
  }

  // Without a target always equal-frequency bins.
  BinModel MakeBins(BinSettings settings = {}, const RunControl& control = {},
                    std::vector<std::size_t>* countedAnew = nullptr) const {
    if (fRun.targets.empty()) settings.algorithm = Algorithm::kEqualFrequency;
    return MCBinModel::MakeBins(settings, fRun, fColumns, control, countedAnew);
  }

  // The model's results, counted from the columns one record at a time.
  std::vector<MCBinModel::RecountedBins> CountAgain(const BinModel& model) const {
    std::vector<std::size_t> results(model.results.size());
    std::iota(results.begin(), results.end(), std::size_t{0});
    MCBinModel::BinCounter counter(model, results);
    std::vector<double> values;
    for (std::size_t record = 0; record < fColumns.GetRecordCount(); ++record) {
      values.clear();
      for (const auto& variable : counter.GetVariables()) {
        const auto& places = variable.isTarget ? fRun.targetColumns : fRun.attributeColumns;
        const double value = fValues[places[variable.index]][record];
        values.push_back(variable.isTarget && value < 0.0 ? kNaN : value);
      }
      const double weight = fRun.weight ? fValues[fRun.weight->column][record] : 1.0;
      if (weight >= 0.5) counter.Add(values.data(), std::floor(weight + 0.5));
    }
    return counter.Finish();
  }

 private:
  std::size_t Add(std::vector<double> values) {
    fValues.push_back(std::move(values));
    return fColumns.Add(MCBinModel::ColumnView<double>{.values = fValues.back().data()});
  }

  std::vector<std::vector<double>> fValues;  // by column
  MemoryColumns fColumns;
  RunVariables fRun;
};

constexpr Algorithm kBoth[] = {Algorithm::kSupervised, Algorithm::kEqualFrequency};

// Two targets, weights that drop records, missing values; over several blocks.
Data MakeManyRecords(bool withTargets = true) {
  constexpr std::size_t kCount = 10000;
  Data data(kCount);
  const auto column = [&](auto valueOf) {
    std::vector<double> values(kCount);
    for (std::size_t i = 0; i < kCount; ++i) values[i] = valueOf(i);
    return values;
  };
  const auto number = [](std::size_t i) { return static_cast<double>(i); };
  for (std::size_t step = 1; step <= 5; ++step) {
    data.AddAttribute("a" + std::to_string(step), column([=](std::size_t i) {
                        return i % 11 == 0 ? kNaN : number(i * 7919 * step % 1013) / 8.0;
                      }));
  }
  data.SetWeight(column([=](std::size_t i) { return i % 13 == 0 ? kNaN : number(i % 5) / 2.0; }));
  if (!withTargets) return data;
  data.AddTarget("t", 2, column([=](std::size_t i) { return number(i * 7919 % 1013 / 600); }));
  data.AddTarget("u", 3, column([=](std::size_t i) { return number(i % 4) - 1.0; }));
  return data;
}

TEST(BinRun, TheNumberOfJobsMakesNoDifference) {
  const Data data = MakeManyRecords();
  for (const Algorithm algorithm : kBoth) {
    const auto run = [&](int jobs) {
      const BinSettings settings{
          .algorithm = algorithm, .prebinAbove = 50, .prebins = 20, .smallBins = 0.2};
      return MCBinModel::WriteBinFile(data.MakeBins(settings, {.jobs = jobs}));
    };
    const std::string one = run(1);
    for (const int jobs : {2, 3, 7, 0}) EXPECT_EQ(run(jobs), one) << jobs;
  }
}

TEST(BinRun, CountsWhatItReadsAndDrops) {
  const Data data = MakeManyRecords();
  for (const Algorithm algorithm : kBoth) {
    const BinModel model = data.MakeBins({.algorithm = algorithm});
    EXPECT_EQ(model.source.recordCount, 10000u);
    EXPECT_EQ(model.source.dropped.missing, 770u);
    EXPECT_EQ(model.source.dropped.zero, 1846u);
    ASSERT_EQ(model.results.size(), 10u);
    EXPECT_EQ(model.results[7].attribute, 2u);
    EXPECT_EQ(model.results[7].target, 1u);
    const auto again = data.CountAgain(model);
    for (std::size_t i = 0; i < again.size(); ++i) {
      EXPECT_TRUE(MCBinModel::HasSameCounts(model.results[i], again[i].counts)) << i;
    }
  }
}

TEST(BinRun, EqualFrequencyCutPointsLookAtNoTarget) {
  const BinModel plain = MakeManyRecords(false).MakeBins({.bins = 40});
  const BinModel counted =
      MakeManyRecords().MakeBins({.algorithm = Algorithm::kEqualFrequency, .bins = 40});
  for (std::size_t i = 0; i < counted.results.size(); ++i) {
    const MCBinModel::AttributeBins& bins = counted.results[i];
    const MCBinModel::AttributeBins& all = plain.results[i % plain.results.size()];
    EXPECT_EQ(bins.cutPoints, all.cutPoints);
    EXPECT_EQ(bins.distinctValues, all.distinctValues);
    EXPECT_EQ(bins.weightWithMissing, all.weightWithMissing);
    const bool allHaveTarget = bins.target == 0u;
    EXPECT_EQ(bins.binWeights == all.binWeights, allHaveTarget);
    EXPECT_EQ(bins.validWeight < all.validWeight, !allHaveTarget);
  }
}

TEST(BinRun, EqualFrequencyBinsWithoutACaseThatHasTheTargetAreNone) {
  Data data(4);
  data.AddAttribute("a", {1, 2, kNaN, kNaN});
  data.AddAttribute("b", {1, 2, 3, 4});
  data.AddTarget("t", 2, {-1, -1, 0, 1});
  const BinModel model = data.MakeBins({.algorithm = Algorithm::kEqualFrequency, .bins = 2});
  const MCBinModel::AttributeBins& none = model.results[0];
  EXPECT_EQ(none.status.GetErrorCode(), 120015);
  EXPECT_TRUE(none.cutPoints.empty() && none.binWeights.empty());
  EXPECT_EQ(none.missing->classWeights, (std::vector<double>{1, 1}));
  EXPECT_EQ(model.results[1].classWeights, (std::vector<std::vector<double>>{{0, 0}, {1, 1}}));
  MCBinModel::ParseBinFile(MCBinModel::WriteBinFile(model), "");
}

// In passes over a record: one for every share of the attributes, one for every result.
TEST(BinRun, TellsItsProgressInRecords) {
  for (const auto& [jobs, algorithm] : {std::pair{1, kBoth[0]}, {3, kBoth[0]}, {3, kBoth[1]}}) {
    std::vector<std::uint64_t> steps;
    RunControl control;
    control.jobs = jobs;
    const auto shares = static_cast<std::uint64_t>(jobs);
    // Equal-frequency bins are five, and then counted by share.
    const std::uint64_t whole =
        10000u * (algorithm == Algorithm::kSupervised ? shares + 10 : 2 * shares + 5);
    const auto caller = std::this_thread::get_id();
    control.progress = [&](std::uint64_t done, std::uint64_t total) {
      EXPECT_EQ(std::this_thread::get_id(), caller);
      EXPECT_EQ(total, whole);
      steps.push_back(done);
    };
    MakeManyRecords().MakeBins({.algorithm = algorithm}, control);
    EXPECT_TRUE(std::is_sorted(steps.begin(), steps.end()));
    EXPECT_EQ(steps.front(), 0u);
    EXPECT_EQ(steps.back(), whole);
    if (jobs > 1) continue;  // told when the calling thread comes to it
    ASSERT_GT(steps.size(), 100u);
    EXPECT_EQ(steps[1], 50u);
  }
}

TEST(BinRun, StopsWhenTheHostSaysSo) {
  const Data data = MakeManyRecords();
  const TempDir directory;
  for (const auto& [jobs, algorithm] : {std::pair{1, kBoth[0]}, {3, kBoth[0]}, {1, kBoth[1]}}) {
    bool hasStopped = true;
    int last = 0;
    for (; hasStopped; ++last) {
      int asked = 0;
      hasStopped = false;
      RunControl control{.tempDir = directory.Path(), .jobs = jobs};
      control.cancel = [&] { return hasStopped = ++asked > last; };
      try {
        data.MakeBins({.algorithm = algorithm}, control);
        EXPECT_FALSE(hasStopped) << last;
      } catch (const Refusal& refusal) {
        EXPECT_EQ(refusal.GetCode(), RefusalCode::kCancelled) << refusal.what();
      }
      EXPECT_EQ(directory.FileCount(), 0u);
    }
    EXPECT_GT(last, jobs == 1 ? 25 : 3);
  }
}

// Throws in the middle of the second block.
class FailingColumns final : public MCBinModel::ColumnSource {
 public:
  std::uint64_t GetRecordCount() const override { return 5000; }
  std::size_t GetRecordsPerBlock() const override { return 3000; }
  void Read(std::size_t block, std::size_t /*column*/, double* values) const override {
    if (block == 1) throw std::logic_error("the host's own");
    std::iota(values, values + 3000, 0.0);
  }
};

TEST(BinRun, ThrowsWhatTheHostsObjectsThrow) {
  const auto fail = [] { throw std::logic_error("the host's own"); };
  const Data data = MakeManyRecords();
  const TempDir directory;
  RunControl progress{.tempDir = directory.Path(), .jobs = 2};
  progress.progress = [&](std::uint64_t done, std::uint64_t) { done > 5000 ? fail() : void(); };
  RunControl cancel{.tempDir = directory.Path(), .jobs = 2};
  int asked = 0;
  cancel.cancel = [&] { return ++asked > 3 ? (fail(), true) : false; };
  EXPECT_THROW(data.MakeBins({}, progress), std::logic_error);
  EXPECT_THROW(data.MakeBins({}, cancel), std::logic_error);
  RunVariables variables;
  variables.attributes.emplace_back().name = "a";
  variables.attributeColumns = {0};
  EXPECT_THROW(MCBinModel::MakeBins({.algorithm = MCBinModel::Algorithm::kEqualFrequency},
                                    variables, FailingColumns(), {.tempDir = directory.Path()}),
               std::logic_error);
  EXPECT_EQ(directory.FileCount(), 0u);
}

// Neighbouring doubles of equal weight beside a third value: a percentile between them is their
// midpoint.
TEST(BinRun, PutsEveryCaseIntoOneBin) {
  std::mt19937_64 random(TestSeed());
  const auto below = [&](unsigned bound) { return static_cast<unsigned>(random() % bound); };
  int countedAnewRuns = 0;
  for (int round = 0; round < 300 && !HasFailure(); ++round) {
    SCOPED_TRACE(round);
    const std::size_t count = 3 * (1 + below(60));
    const bool atUpperEnd = below(2) == 0;
    const double base = std::ldexp(1.0, static_cast<int>(below(20)) - 10);
    const double low = atUpperEnd ? std::nextafter(base, 2.0 * base) : base;
    const double places[] = {low, std::nextafter(low, 2.0 * base), atUpperEnd ? 0.0 : 3.0 * base};
    std::vector<double> values(count), classes(count), weights(count);
    for (std::size_t i = 0; i < count; ++i) {
      const bool isMissing = i % 3 == 0 ? below(10) == 0 : std::isnan(values[i - i % 3]);
      values[i] = isMissing ? kNaN : places[i % 3];
      classes[i] = static_cast<double>(below(4)) - 1.0;
      weights[i] = i % 3 == 0 ? below(8) / 2.0 : weights[i - 1];
    }
    weights[0] = 1.0;
    Data data(count);
    data.AddAttribute("v", values);
    if (below(2) == 0) data.AddTarget("t", 3, classes);
    if (below(2) == 0) data.SetWeight(weights);
    const int bins = 2 + static_cast<int>(below(3));
    std::vector<std::size_t> countedAnew;
    const BinModel model = data.MakeBins({.algorithm = kBoth[below(2)],
                                          .rightClosed = below(2) == 0,
                                          .prebinAbove = 1,
                                          .prebins = bins,
                                          .bins = bins},
                                         {}, &countedAnew);
    countedAnewRuns += countedAnew.empty() ? 0 : 1;
    const MCBinModel::RecountedBins again = data.CountAgain(model)[0];
    const MCBinModel::AttributeBins& found = model.results[0];
    EXPECT_EQ(found.validWeight, again.counts.validWeight);
    EXPECT_EQ(found.weightWithMissing, again.counts.weightWithMissing);
    ASSERT_TRUE(found.missing);
    EXPECT_EQ(found.missing->weight, again.counts.missing->weight);
    EXPECT_EQ(found.missing->classWeights, again.counts.missing->classWeights);
    EXPECT_EQ(std::accumulate(found.binWeights.begin(), found.binWeights.end(), 0.0),
              found.binWeights.empty() ? 0.0 : found.validWeight);
    if (!countedAnew.empty()) {
      EXPECT_TRUE(MCBinModel::HasSameCounts(found, again.counts));
    }
  }
  EXPECT_GT(countedAnewRuns, 5) << "the data do not try what they are for";
}

struct Refused {
  const char* name;
  std::vector<double> values;
  std::vector<double> weights;  // none: no weight variable
  RefusalCode code;
  const char* what;  // a part of it
  RunControl control = {};
  int classes = 0;  // of a target whose records are all of the first; 0: without
};
void PrintTo(const Refused& row, std::ostream* os) { *os << row.name; }

class RefusedRunTest : public testing::TestWithParam<Refused> {};

TEST_P(RefusedRunTest, SaysWhy) {
  Data data(4);
  const Refused& row = GetParam();
  if (!row.values.empty()) data.AddAttribute("a", row.values);
  if (!row.weights.empty()) data.SetWeight(row.weights);
  if (row.classes > 0) data.AddTarget("t", row.classes, {0, 0, 0, 0});
  try {
    data.MakeBins({.bins = 2}, row.control);
    ADD_FAILURE() << "not refused";
  } catch (const Refusal& refusal) {
    EXPECT_EQ(refusal.GetCode(), row.code);
    EXPECT_NE(std::string(refusal.what()).find(row.what), std::string::npos) << refusal.what();
  }
}

const std::vector<double> kGood = {1, 2, 3, 4};

const Refused kRefused[] = {
    {"NoAttribute", {}, {}, RefusalCode::kInput, "no attribute"},
    {"OneClass", kGood, {}, RefusalCode::kInput, "at least two categories", {}, 1},
    {"Infinity",
     {1, kNaN, -kInfinity, 4},
     {},
     RefusalCode::kInfiniteNumber,
     "record 3: the number -inf in column 'a' is infinite"},
    {"NegativeWeight",
     kGood,
     {1, 2, -3, 4},
     RefusalCode::kBadWeight,
     "the weight -3 in column 'w' is negative"},
    {"InfiniteWeight", kGood, {1, kInfinity, 1, 1}, RefusalCode::kBadWeight, "infinite"},
    {"NoWeight",
     kGood,
     {0, kNaN, 0.2, 0},
     RefusalCode::kNoRecords,
     "1 missing, 2 zero, 1 rounded to zero"},
    {"HugeWeights",
     kGood,
     {6e305, 6e305, 6e305, 6e305},
     RefusalCode::kInput,
     "a hundredth of the largest double"},
    {"SumOfWeights",
     kGood,
     {1e308, 1e308, 1, 1},
     RefusalCode::kInput,
     "more than the largest double"},
    {"HugeValues",
     {1.5e308, 1.6e308, 1.5e308, 1.6e308},
     {},
     RefusalCode::kInput,
     "a cut point is beyond the largest double"},
    // Answered as if no record had a value.
    {"NoDirectory",
     kGood,
     {},
     RefusalCode::kTemporaryFile,
     "a temporary file could not be written",
     {.tempDir = "/nowhere"}},
    {"FewerThanNoThreads", kGood, {}, RefusalCode::kInput, "-1 threads", {.jobs = -1}},
};

INSTANTIATE_TEST_SUITE_P(Runs, RefusedRunTest, testing::ValuesIn(kRefused), RowName);

TEST(BinRun, RefusesVariablesThatNoNameTellsApart) {
  for (const std::vector<std::string>& names :
       {std::vector<std::string>{""}, {"a", "a"}, {"w"}}) {  // the weight's
    Data data(4);
    for (const std::string& name : names) data.AddAttribute(name, kGood);
    data.SetWeight(kGood);
    EXPECT_THROW(data.MakeBins({.bins = 2}), Refusal) << testing::PrintToString(names);
  }
}

TEST(BinRun, AColumnWithoutValuesIsNoFailure) {
  Data data(3);
  data.AddAttribute("empty", {kNaN, kNaN, kNaN});
  data.AddAttribute("full", {1, 2, 3});
  const BinModel model = data.MakeBins({.bins = 2});
  EXPECT_EQ(model.results[0].status.GetErrorCode(), 120015);
  EXPECT_EQ(model.results[1].binWeights, (std::vector<double>{2, 1}));
}

}  // namespace
