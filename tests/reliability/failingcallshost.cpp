// Usage: failing_calls_host supervised|equal-frequency RECORDS DIRECTORY
// A host of the library that is to be run with failingcalls.cpp preloaded. Makes bins three times,
// the second time with calls that fail: ends with 0 when that run gave the bins of the first one,
// with 1 when each that it did not give has an error or a warning, and with 4 otherwise. The third
// run is made by the object of the second one, with no failing calls, and gives the right bins, or
// the program ends with 5.

#include <dlfcn.h>

#include <cstdio>
#include <cstdlib>
#include <sstream>
#include <string>

#include "support/agreement.h"
#include "support/wholerun.h"

namespace {

constexpr int kSame = 0;
constexpr int kTold = 1;
constexpr int kWrong = 4;
constexpr int kUnusable = 5;

// Says whether the calls that follow count.
void Count(bool on) {
  static const auto count = reinterpret_cast<void (*)(bool)>(dlsym(RTLD_DEFAULT, "CountCalls"));
  if (count != nullptr) count(on);
}

// What a run came to: its status, and a line for each result.
struct Bins {
  MCBinning::MCStatus status;
  std::string results;
};

// Prints the lines of `bins` that differ from those of `expected`, and tells whether each of them
// speaks of an error or a warning.
bool IsToldAbout(const Bins& bins, const Bins& expected) {
  std::fprintf(stderr, "%s instead of %s\n", Text(bins.status).c_str(),
               Text(expected.status).c_str());
  if (bins.status.IsOK()) return false;
  std::istringstream lines(bins.results);
  std::istringstream expectedLines(expected.results);
  std::string line;
  std::string expectedLine;
  bool isTold = true;
  while (std::getline(expectedLines, expectedLine)) {
    line.clear();
    std::getline(lines, line);
    if (line == expectedLine) continue;
    std::fprintf(stderr, "%s\n", line.c_str());
    isTold = isTold && (line.find(": 120021/-1[") != std::string::npos ||
                        line.find(": 120015/1[") != std::string::npos);
  }
  return isTold || bins.status.IsError();
}

}  // namespace

int main(int argc, char** argv) {
  if (argc != 4) return 2;
  Count(false);
  const Driver driver =
      std::string(argv[1]) == "supervised" ? Driver::kSupervised : Driver::kEqualFrequency;
  const Scenario scenario = MixedScenario(std::atoi(argv[2]));
  BINVarList variables = scenario.VarList();
  MCCommon::InMemoryRecordIterator records = scenario.Records();

  const auto isSame = [](const Bins& bins, const Bins& expected) {
    return Text(bins.status) == Text(expected.status) && bins.results == expected.results;
  };

  Bins expected;
  std::size_t resultCount = 0;
  {
    WholeRun run(driver, scenario.options, variables, argv[3]);
    expected.status = run.CreateBins(records);
    expected.results = run.Text();
    resultCount = run.GetResults().size();
  }

  WholeRun run(driver, scenario.options, variables, argv[3]);
  records.Rewind();
  Count(true);
  Bins bins{run.CreateBins(records), {}};
  Count(false);
  bins.results = run.Text();
  int outcome = kSame;
  if (!isSame(bins, expected)) outcome = IsToldAbout(bins, expected) ? kTold : kWrong;

  records.Rewind();
  Bins later{run.CreateBins(records), {}};
  later.results = run.Text(resultCount);
  // The status speaks of the earlier run's results as well.
  if (later.status.IsError() || later.results != expected.results) {
    std::fprintf(stderr, "later ");
    IsToldAbout(later, expected);
    if (outcome != kWrong) outcome = kUnusable;
  }
  Count(true);  // the removal of its files is tried as well
  return outcome;
}
