// Host objects that throw, at whichever of their calls.

#include <gtest/gtest.h>

#include <functional>
#include <new>
#include <stdexcept>
#include <string>

#include "support/agreement.h"
#include "support/hostdoubles.h"
#include "support/rowname.h"
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

class ThrowingHost : public testing::TestWithParam<Thrown> {};

TEST_P(ThrowingHost, EndsTheRunAndTheObjectWorksAgain) {
  const Scenario scenario = MixedScenario(12);
  const TempDir directory;
  for (const Driver driver : kDrivers) {
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
      TellingIterator records(scenario.Records());
      listener.onReport = query.onPoll = records.onCall = onCall;
      {
        WholeRun run(driver, scenario.options, variables, directory.Path(), {&listener, &query});
        if (!run.GetCreated().IsOK()) {
          EXPECT_EQ(Text(run.GetCreated()), GetParam().status);
          continue;
        }
        const std::string status = Text(run.CreateBins(records));
        EXPECT_TRUE(!hasThrown || status == GetParam().status) << status;
        if (callToFail == 0) expected = run.Text();
        if (hasThrown) {
          records.Rewind();
          EXPECT_FALSE(run.CreateBins(records).IsError());
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
