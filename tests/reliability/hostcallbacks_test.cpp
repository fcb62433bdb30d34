// Host objects that throw, at whichever of their calls.

#include <gtest/gtest.h>

#include <functional>
#include <memory>
#include <new>
#include <stdexcept>
#include <string>
#include <utility>

#include "support/agreement.h"
#include "support/hostdoubles.h"
#include "support/rowname.h"
#include "support/scenarioblocks.h"
#include "support/tempdir.h"
#include "support/wholerun.h"

namespace {

// What a host throws, and the status it ends in.
struct Thrown {
  const char* name;
  void (*raise)();
  const char* status;
};

void PrintTo(const Thrown& thrown, std::ostream* os) { *os << thrown.name; }

const Thrown kThrown[] = {
    {"BadAlloc", [] { throw std::bad_alloc(); }, "3/-1[0 0 0]"},
    {"StandardException", [] { throw std::runtime_error("host"); }, "1/-1[0 0 0]"},
    {"NoException", [] { throw 42; }, "1/-1[0 0 0]"},
};

// Tells of each call.
class TellingIterator : public MCCommon::InMemoryRecordIterator {
 public:
  explicit TellingIterator(const MCCommon::InMemoryRecordIterator& records)
      : InMemoryRecordIterator(records) {}
  bool HasMore() override {
    onCall();
    return InMemoryRecordIterator::HasMore();
  }
  const MCCommon::Record* Next() override {
    onCall();
    return InMemoryRecordIterator::Next();
  }
  std::function<void()> onCall;
};

// The same by column or one by one, with a hook in all that the library calls.
std::unique_ptr<MCCommon::RecordIterator> MakeTelling(const Scenario& scenario, bool byColumn,
                                                      const std::function<void()>& onCall) {
  if (byColumn) {
    auto blocks = std::make_unique<ScenarioBlocks>(scenario, 3, 5);
    blocks->onBlock = onCall;
    return blocks;
  }
  auto records = std::make_unique<TellingIterator>(scenario.Records());
  records->onCall = onCall;
  return records;
}

class ThrowingHost : public testing::TestWithParam<Thrown> {};

TEST_P(ThrowingHost, EndsTheRunAndTheObjectWorksAgain) {
  const Scenario scenario = MixedScenario(12);
  const TempDir directory;
  for (const auto& [driver, byColumn] :
       {std::pair(Driver::kSupervised, false), std::pair(Driver::kSupervised, true),
        std::pair(Driver::kEqualFrequency, false), std::pair(Driver::kEqualFrequency, true)}) {
    BINVarList variables = scenario.VarList();
    std::string expected;
    bool hasThrown = true;
    for (int callToFail = 0; hasThrown; ++callToFail) {
      SCOPED_TRACE(testing::PrintToString(driver) + ", call " + std::to_string(callToFail));
      int calls = 0;
      hasThrown = false;
      const auto onCall = [&] {
        if (++calls != callToFail) return;
        hasThrown = true;
        GetParam().raise();
      };
      RecordingListener listener;
      CountingCancel query;
      listener.onReport = query.onPoll = onCall;
      {
        WholeRun run(driver, scenario.options, variables, directory.Path(), {&listener, &query});
        if (!run.GetCreated().IsOK()) {
          EXPECT_EQ(Text(run.GetCreated()), GetParam().status);
          continue;
        }
        const std::string status = Text(run.CreateBins(*MakeTelling(scenario, byColumn, onCall)));
        EXPECT_TRUE(!hasThrown || status == GetParam().status) << status;
        if (callToFail == 0) expected = run.Text();
        if (hasThrown) {
          EXPECT_FALSE(run.CreateBins(*MakeTelling(scenario, byColumn, onCall)).IsError());
        }
        EXPECT_EQ(run.Text(scenario.variables.size() - 2 + (driver != Driver::kSupervised)),
                  expected);
        // Asks the query once more.
        query.onPoll = GetParam().raise;
        EXPECT_EQ(Text(run.GetStatus()), GetParam().status);
      }
      EXPECT_EQ(directory.FileCount(), 0u);
      if (callToFail == 0) hasThrown = true;  // that one was for the expected results
    }
  }
}

INSTANTIATE_TEST_SUITE_P(Kinds, ThrowingHost, testing::ValuesIn(kThrown), RowName);

}  // namespace
