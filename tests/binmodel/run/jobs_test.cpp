#include "binmodel/run/jobs.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <atomic>
#include <cstdint>
#include <functional>
#include <ostream>
#include <stdexcept>
#include <string>
#include <thread>
#include <vector>

#include "binmodel/run/binrun.h"
#include "binmodel/run/memorycolumns.h"
#include "cli/program.h"
#include "support/rowname.h"

namespace {

using MCBinModel::Jobs;

TEST(Jobs, OneThatFailsStopsTheOthersAndIsToldAbout) {
  Jobs jobs({});
  std::atomic<int> begun{0};
  std::atomic<int> stopped{0};
  const auto job = [&](std::size_t index) {
    ++begun;
    if (index == 1) {
      while (begun < 4) continue;
      throw std::runtime_error("the first failure");
    }
    while (!jobs.QueryCancel()) continue;
    ++stopped;
    throw std::runtime_error("a consequence");
  };
  try {
    jobs.Run(4, 4, job);
    ADD_FAILURE() << "nothing thrown";
  } catch (const std::runtime_error& failure) {
    EXPECT_STREQ(failure.what(), "the first failure");
  }
  EXPECT_EQ(stopped, 3);
}

// A host's flag that is seen by one query alone still stops the others, and those to come.
TEST(Jobs, TheHostIsAskedInItsOwnThreadAndStopsAllOfThem) {
  const auto caller = std::this_thread::get_id();
  for (const std::size_t threadCount : {std::size_t{1}, std::size_t{3}}) {
    std::atomic<bool> flag{false};
    int told = 0;
    Jobs jobs({[&] {
                 EXPECT_EQ(std::this_thread::get_id(), caller);
                 return flag.exchange(false);
               },
               [&] {
                 EXPECT_EQ(std::this_thread::get_id(), caller);
                 ++told;
               }});
    jobs.Run(threadCount, 5, [&](std::size_t index) {
      jobs.Tell();
      if (index + 1 == threadCount) flag = true;
      while (!jobs.QueryCancel()) continue;
    });
    EXPECT_TRUE(jobs.IsCancelled());
    EXPECT_GE(told, 1);
  }
}

// A thread that is done takes what is left.
TEST(Jobs, WaitForNoThread) {
  Jobs jobs({});
  std::atomic<int> done{0};
  jobs.Run(2, 10, [&](std::size_t index) {
    while (index == 0 && done < 9) continue;
    ++done;
  });
  EXPECT_EQ(done, 10);
}

// Whatever pieces the work is reported in, it adds up to the whole.
TEST(Progress, EndsWhenAllIsDone) {
  std::vector<double> values(30'000);
  for (std::size_t i = 0; i < values.size(); ++i) values[i] = static_cast<double>(i % 1000);
  MCBinModel::MemoryColumns columns(values.size());
  MCBinModel::RunVariables variables;
  for (const char* name : {"a", "b", "c", "d", "e"}) {
    variables.attributes.emplace_back().name = name;
    variables.attributeColumns.push_back(columns.Add({values.data()}));
  }
  MCBinModel::BinSettings settings;
  settings.algorithm = MCBinModel::Algorithm::kEqualFrequency;
  for (const int jobs : {1, 2}) {
    std::vector<std::uint64_t> steps;
    std::uint64_t whole = 0;
    MCBinModel::RunControl control;
    control.jobs = jobs;
    control.progress = [&](std::uint64_t done, std::uint64_t total) {
      steps.push_back(done);
      whole = total;
    };
    MCBinModel::MakeBins(settings, variables, columns, control);
    ASSERT_GT(steps.size(), jobs == 1 ? 10u : 1u) << jobs;
    EXPECT_TRUE(std::is_sorted(steps.begin(), steps.end())) << jobs;
    EXPECT_EQ(steps.front(), 0u) << jobs;
    EXPECT_EQ(steps.back(), whole) << jobs;
  }
}

// A run with everything that goes to a file or a stream.
struct Run {
  const char* name;
  std::string command;
  std::string input;  // the content of in.csv
};
void PrintTo(const Run& row, std::ostream* os) { *os << row.name; }

// Quotes, line ends within fields, missing values of every kind, weights that drop records, a
// text that shows late that a column is not numeric.
std::string OddFields(const std::string& lastRecord) {
  std::string text = "a,\"b\"\"c\",t,y,w,d\r\n";
  for (int i = 0; i < 20000; ++i) {
    const std::string n = std::to_string(i * 7919 % 1013);
    text += (i % 11 == 0 ? "NA" : n) + (i % 7 == 0 ? ",\"\n\"\"" : ",\"") +
            std::to_string(i * 31 % 40) + "\"," + (i == 15000 ? "late" : "1") +
            (i % 3 == 0   ? ",\"p\nq\","
             : i % 3 == 1 ? ",01,"
                          : ",1,") +
            (i % 13 == 0   ? ""
             : i % 17 == 0 ? "0"
                           : "1.5") +
            "," + std::to_string(i % 5 - 2) + "\r\n";
  }
  return text + lastRecord;
}

class JobCountTest : public testing::TestWithParam<Run> {};

TEST_P(JobCountTest, MakesNoDifference) {
  const auto runWith = [](const char* jobCount) {
    const Program program;
    program.Write("in.csv", GetParam().input);
    const auto outcome = program.Run(GetParam().command + " --json bins.json --jobs " + jobCount);
    const bool done = outcome.exitCode == 0;
    EXPECT_EQ(program.Files().size(), done ? 2u : 1u);
    return std::vector<std::string>{std::to_string(outcome.exitCode), outcome.out, outcome.err,
                                    done ? program.Read("bins.json") : ""};
  };
  const auto one = runWith("1");
  for (const char* jobCount : {"2", "3", "7", "0"}) EXPECT_EQ(runWith(jobCount), one) << jobCount;
}

const Run kRuns[] = {
    {"SeveralTargets",
     "supervised --target death,mgus --target sex --prebin-above 50 --prebins 20 "
     "--small-bins 0.2 data/flchain.csv",
     ""},
    {"Weights", "supervised --target death --weight weight --closed left data/flchain_weighted.csv",
     ""},
    {"EqualFrequency", "equal-frequency --bins 7 --categorical sex data/flchain.csv", ""},
    {"OddFields",
     "supervised --target y,d --weight w --missing a=5,7:90 --attributes \"b\"\"c\",a "
     "--categorical \"b\"\"c\" in.csv",
     OddFields("")},
    {"TextsAreNoted", "supervised --target y in.csv", OddFields("")},
    {"OddFieldsAsNumbers", "supervised --target y --na late,NA in.csv", OddFields("")},
    {"WarningsOfResults", "supervised --target y in.csv", "a,b,c,y\n1,,1,p\n1,,2,q\n"},
    {"RaggedRecordAtTheEnd", "supervised --target y in.csv", OddFields("1,2,3\n")},
    {"OpenQuoteAtTheEnd", "supervised --target y in.csv", OddFields("1,2,3,\"4,5,6\n")},
    {"BadWeightAtTheEnd", "supervised --target y --weight w in.csv",
     OddFields("1,1,1,p,-1,1\n1,2\n")},
    {"CutPointBeyondTheLargestDouble", "equal-frequency --bins 2 in.csv",
     "a,b,c,d\n1,1.5e308,1,1.5e308\n2,1.6e308,2,1.6e308\n"},
};

INSTANTIATE_TEST_SUITE_P(Runs, JobCountTest, testing::ValuesIn(kRuns), RowName);

}  // namespace
