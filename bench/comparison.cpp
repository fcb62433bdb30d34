#include "comparison.h"

#include <sys/resource.h>
#include <sys/time.h>

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <ctime>
#include <limits>

namespace bench {

namespace {

constexpr int kFewestRounds = 3;
constexpr int kMostRounds = 60;
constexpr double kFewestSeconds = 4.0;
constexpr double kMostSeconds = 40.0;

// The best times are there when so many rounds in turn have not made any of them better by more
// than a hundredth: others who use the machine slow down rounds for seconds on end.
constexpr int kSettledRounds = 6;
constexpr double kBetter = 0.99;

constexpr double kNotMeasured = std::numeric_limits<double>::infinity();

Clock gClock = Clock::kProcessor;

double WallSeconds() {
  const auto now = std::chrono::steady_clock::now().time_since_epoch();
  return std::chrono::duration<double>(now).count();
}

double ToSeconds(const timeval& time) {
  return static_cast<double>(time.tv_sec) + 1e-6 * static_cast<double>(time.tv_usec);
}

double ProcessorSeconds() {
  timespec own{};
  clock_gettime(CLOCK_PROCESS_CPUTIME_ID, &own);
  rusage children{};
  getrusage(RUSAGE_CHILDREN, &children);
  return static_cast<double>(own.tv_sec) + 1e-9 * static_cast<double>(own.tv_nsec) +
         ToSeconds(children.ru_utime) + ToSeconds(children.ru_stime);
}

double Now() { return gClock == Clock::kWall ? WallSeconds() : ProcessorSeconds(); }

// The best times so far.
struct Times {
  double plain = kNotMeasured;
  double library = kNotMeasured;
  double floor = kNotMeasured;
};

Times Measure(const Comparison& comparison) {
  Times best;
  int unchanged = 0;
  const auto run = [&unchanged](const Side& side, double& bestOfSide) {
    if (!side) return;
    const double seconds = side();
    if (seconds < kBetter * bestOfSide) unchanged = 0;
    bestOfSide = std::min(bestOfSide, seconds);
  };
  const double start = WallSeconds();
  for (int round = 0; round < kMostRounds; ++round) {
    const double passed = WallSeconds() - start;
    const bool isSettled = unchanged >= kSettledRounds && passed > kFewestSeconds;
    if (round >= kFewestRounds && (isSettled || passed > kMostSeconds)) break;
    ++unchanged;
    run(comparison.plain, best.plain);
    run(comparison.library, best.library);
    run(comparison.floor, best.floor);
  }
  return best;
}

std::string Milliseconds(double seconds) {
  if (seconds == kNotMeasured) return "-";
  char text[32];
  std::snprintf(text, sizeof text, "%.2f", 1000.0 * seconds);
  return text;
}

std::string Ratio(double ratio, const char* what) {
  char text[64];
  std::snprintf(text, sizeof text, "%.2f %s", ratio, what);
  return text;
}

void PrintRow(const std::string& work, const std::string& measured, const std::string& target,
              const std::string& verdict, const Times& times) {
  std::printf("%-60s %-14s %-17s %-7s %10s %10s %10s\n", work.c_str(), measured.c_str(),
              target.c_str(), verdict.c_str(), Milliseconds(times.plain).c_str(),
              Milliseconds(times.library).c_str(), Milliseconds(times.floor).c_str());
  std::fflush(stdout);
}

}  // namespace

void SetClock(Clock clock) { gClock = clock; }

double WallSecondsOf(const std::function<void()>& work) {
  const double start = WallSeconds();
  work();
  return WallSeconds() - start;
}

double SecondsOf(const std::function<void()>& work) {
  const double start = Now();
  work();
  return Now() - start;
}

double BestSecondsOf(const Side& side) { return Measure({"", {}, side, {}, {}}).library; }

void PrintHeading() {
  std::printf("%-60s %-14s %-17s %-7s %10s %10s %10s\n", "work", "measured", "target", "",
              "plain ms", "library ms", "floor ms");
}

void Compare(const Comparison& comparison) {
  const Times times = Measure(comparison);
  const bool isSame = !comparison.isSameResult || comparison.isSameResult();
  if (comparison.goals.empty()) {
    PrintRow(comparison.work, Ratio(times.plain / times.library, "x faster"), "-", "", times);
  }
  for (const Goal& goal : comparison.goals) {
    const bool isAgainstPlain = goal.kind == Goal::Kind::kFasterThanPlain;
    const double ratio = isAgainstPlain ? times.plain / times.library : times.library / times.floor;
    const bool isMet = isAgainstPlain ? ratio >= goal.limit : ratio <= goal.limit;
    PrintRow(comparison.work, Ratio(ratio, goal.unit),
             (isAgainstPlain ? ">= " : "<= ") + Ratio(goal.limit, goal.unit),
             isMet ? "met" : "MISSED", times);
  }
  if (!isSame) PrintNote(comparison.work, "the result DIFFERS from that of the plain form");
}

void PrintLine(const std::string& work, const std::string& measured, const std::string& target,
               bool isMet) {
  PrintRow(work, measured, target, isMet ? "met" : "MISSED", Times());
}

void PrintNote(const std::string& work, const std::string& note) {
  std::printf("%-60s %s\n", work.c_str(), note.c_str());
  std::fflush(stdout);
}

}  // namespace bench
