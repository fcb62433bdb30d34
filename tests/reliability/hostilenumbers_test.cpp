// Numbers that no one meant to hand in: every combination ends, with a status, and again with
// the same results.

#include <gtest/gtest.h>

#include <cfloat>
#include <cmath>
#include <functional>
#include <limits>
#include <string>

#include "common/missing.h"
#include "support/rowname.h"
#include "support/tempdir.h"
#include "support/wholerun.h"

namespace {

using Doubles = std::vector<double>;

constexpr double kInfinity = std::numeric_limits<double>::infinity();
constexpr double kNaN = std::numeric_limits<double>::quiet_NaN();
constexpr double kDenormal = std::numeric_limits<double>::denorm_min();
constexpr double kMost = 0x1p53;  // beyond, not every whole number is a double
constexpr std::size_t kRecords = 48;

// The system-missing value as it was, whatever a test makes of it.
class MissingValue {
 public:
  ~MissingValue() { MCMV::gMissingValue = fOld; }

 private:
  const double fOld = MCMV::gMissingValue;
};

// `numbers` again and again.
Doubles Column(const Doubles& numbers) {
  Doubles column;
  for (std::size_t i = 0; i < kRecords; ++i) column.push_back(numbers[i % numbers.size()]);
  return column;
}

struct Numbers {
  const char* name;
  Doubles values;
};

void PrintTo(const Numbers& numbers, std::ostream* os) { *os << numbers.name; }

const Numbers kValues[] = {
    {"NaN", {kNaN, -kNaN}},
    {"NaNAmongOthers", {1, kNaN, 2, 3, -kNaN, 4, 5}},
    {"Infinities", {kInfinity, -kInfinity, 1, 2, 3}},
    {"OneInfinity", {-kInfinity}},
    {"Zeros", {0.0, -0.0}},
    {"Denormals", {kDenormal, -kDenormal, 0.0, 3 * kDenormal, DBL_MIN}},
    {"Largest", {DBL_MAX, 1, -DBL_MAX, DBL_MAX, 0.0, 2}},
    {"BelowAllOthers", {-kInfinity, -kInfinity, -kInfinity, -DBL_MAX, 1, 2, 3, 4, 5, 6, 7, 8}},
    {"Neighbours", {1.0, 1.0 + DBL_EPSILON, 1.0 - DBL_EPSILON / 2}},
    {"Everything",
     {kNaN, kInfinity, -kInfinity, DBL_MAX, -DBL_MAX, kDenormal, -0.0, 0.0, 1, 2, 1e308, -1e308}},
};

const Doubles kWeights[] = {
    {},  // no weight variable
    {1, 2, 3},
    {kMost, 1, kMost - 1},
    {DBL_MAX, DBL_MAX},
    {kInfinity, 1, 2},
    {kNaN, 1, 1},
    {-1, -kInfinity, -0.0},
    {kDenormal, 1e-300, 0.25, 1e300},
};

const Doubles kTargets[] = {
    {0, 1, 2, 1},
    {0, 255, 254.9, -0.9},
    {kNaN, 0, 1},  // no code at all: out of range
    {kInfinity, -1, 1},
};

// What the host makes of the system-missing value for the data pass, and later on.
struct MissingValues {
  double during;
  double afterwards;
};

const MissingValues kMissingValues[] = {
    {-DBL_MAX, -DBL_MAX}, {kNaN, kNaN},     {-DBL_MAX, kNaN}, {kNaN, -DBL_MAX},
    {1.0, 300.0},         {300.0, 0.0},     {0.0, kInfinity}, {kInfinity, -kInfinity},
    {-7.0, 2.0},          {kDenormal, 1e9},
};

bool IsKnown(long code) {
  return code == 0 || code == 1 || code == 3 ||
         (code >= 120002 && code <= 120021 && code != 120007);
}

class HostileNumbers : public testing::TestWithParam<Numbers> {
 protected:
  // One object that bins twice, with the system-missing value changed in between.
  void Run(Driver driver, const Scenario& scenario, const MissingValues& missing) {
    const MissingValue restored;
    MCMV::gMissingValue = missing.during;
    BINVarList variables = scenario.VarList();
    MCCommon::InMemoryRecordIterator records = scenario.Records();
    WholeRun run(driver, scenario.options, variables, directory.Path());
    ASSERT_TRUE(run.GetCreated().IsOK());
    const long first = run.CreateBins(records).GetErrorCode();
    ASSERT_TRUE(IsKnown(first)) << first;
    const std::string text = run.Text();
    for (const StoredResult& result : run.GetResults()) {
      const reference::Binning& bins = result.binning;
      ASSERT_TRUE(bins.counts.empty() || bins.counts.size() == bins.cutPoints.size() + 1) << text;
    }
    MCMV::gMissingValue = missing.afterwards;
    const long second = run.CreateBins(records).GetErrorCode();
    ASSERT_TRUE(IsKnown(second)) << second;
    if (missing.during == missing.afterwards && first != 120012) {
      EXPECT_EQ(run.Text(), text + text);
    }
  }

  TempDir directory;
};

TEST_P(HostileNumbers, EndWithAStatusEveryTime) {
  std::size_t runCount = 0;
  for (const Doubles& weights : kWeights) {
    for (const Doubles& targets : kTargets) {
      Scenario scenario;
      scenario.Append(Continuous(Column(GetParam().values)));
      scenario.Append(Categorical(Column(targets), 256, IBINVariable::RoleTarget));
      scenario.Append(Categorical(Column(GetParam().values), 3));
      if (!weights.empty()) scenario.Append(Weights(Column(weights)));
      scenario.options.numberOfBins = 5;
      scenario.options.smallBinThreshold = 0.5;
      for (int choice = 0; choice < 16; ++choice) {
        scenario.options.rightBorderClosed = (choice & 1) != 0;
        scenario.options.distinctThreshold = (choice & 2) != 0 ? 2 : -1;
        scenario.rounding =
            (choice & 4) != 0 ? reference::Rounding::kNone : reference::Rounding::kClosest;
        const Driver driver = kDrivers[choice / 8];
        // Three of these, and each of them with most of the rest.
        for (int i = 0; i < 3; ++i) {
          Run(driver, scenario, kMissingValues[runCount++ % std::size(kMissingValues)]);
        }
      }
    }
  }
  EXPECT_EQ(directory.FileCount(), 0u);
}

// Also where -infinity and -DBL_MAX are values of their own.
TEST_P(HostileNumbers, WeightsOf1ChangeNothing) {
  const MissingValue restored;
  MCMV::gMissingValue = 12345.5;
  const Doubles values = Column(GetParam().values);
  Doubles codes;
  for (const double value : values) codes.push_back(value == -kInfinity || value == 2.0 ? 0 : 1);
  for (const Driver driver : kDrivers) {
    for (int choice = 0; choice < 4; ++choice) {
      std::string texts[2];
      for (const bool isWeighted : {false, true}) {
        Scenario scenario;
        scenario.Append(Continuous(values));
        scenario.Append(Categorical(codes, 2, IBINVariable::RoleTarget));
        if (isWeighted) scenario.Append(Weights(Doubles(kRecords, 1.0)));
        scenario.options.numberOfBins = 5;
        scenario.options.rightBorderClosed = (choice & 1) != 0;
        scenario.options.distinctThreshold = (choice & 2) != 0 ? 2 : -1;
        BINVarList variables = scenario.VarList();
        MCCommon::InMemoryRecordIterator records = scenario.Records();
        WholeRun run(driver, scenario.options, variables, directory.Path());
        run.CreateBins(records);
        texts[isWeighted ? 1 : 0] = run.Text();
      }
      EXPECT_EQ(texts[0], texts[1]) << choice;
    }
  }
}

INSTANTIATE_TEST_SUITE_P(Values, HostileNumbers, testing::ValuesIn(kValues), RowName);

}  // namespace
