#include "binmodel/run/jobs.h"

#include <gtest/gtest.h>

#include <atomic>
#include <stdexcept>
#include <string>
#include <thread>
#include <vector>

#include "cli/program.h"

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
    EXPECT_TRUE(told == 1 || threadCount > 1);  // with several the host may be asked first
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

// Results, refusals and warnings, in their order.
TEST(JobsOption, MakesNoDifference) {
  const Program program;
  program.Write("in.csv", "a,b,c,d\n1,1.5e308,1,1.5e308\n2,1.6e308,2,1.6e308\n");
  for (const char* command : {"equal-frequency --bins 2 in.csv", "supervised --target a in.csv",
                              "supervised --target death,mgus --target sex --prebin-above 50 "
                              "--prebins 20 --small-bins 0.2 --json - data/flchain.csv"}) {
    const auto runWith = [&](const char* jobCount) {
      const auto outcome = program.Run(std::string(command) + " --jobs " + jobCount);
      return std::vector<std::string>{std::to_string(outcome.exitCode), outcome.out, outcome.err};
    };
    const auto one = runWith("1");
    for (const char* jobCount : {"3", "0"}) EXPECT_EQ(runWith(jobCount), one) << command;
  }
}

}  // namespace
