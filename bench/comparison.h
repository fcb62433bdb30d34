#pragma once

#include <functional>
#include <string>
#include <vector>

namespace bench {

// Which clock all measurements use. Processor time, children that have ended included, is
// little disturbed by other jobs of the machine; wall time also counts waiting for the disk.
enum class Clock { kProcessor, kWall };
void SetClock(Clock clock);

double SecondsOf(const std::function<void()>& work);

// In wall time, whatever clock is set.
double WallSecondsOf(const std::function<void()>& work);

// One side of a comparison: does its work once and returns the seconds that count.
using Side = std::function<double()>;

// The best time of a side that is measured like those of a comparison.
double BestSecondsOf(const Side& side);

// What the times of a comparison are held against.
struct Goal {
  enum class Kind {
    kFasterThanPlain,  // plain time / library time is at least `limit`
    kWithinFloor,      // library time / floor time is at most `limit`
  };
  Kind kind;
  double limit;
  const char* unit;
};

inline Goal FasterThanPlain(double limit) {
  return {Goal::Kind::kFasterThanPlain, limit, "x faster"};
}
inline Goal WithinFloor(double limit) { return {Goal::Kind::kWithinFloor, limit, "x floor"}; }

// The same work done by the plain form, by the library and by its floor; a side that is not
// there is empty.
struct Comparison {
  std::string work;
  Side plain;
  Side library;
  Side floor;
  std::vector<Goal> goals;
  // Asked after the measurement; empty for yes.
  std::function<bool()> isSameResult = {};
};

// Prints the heading of the table.
void PrintHeading();

// Runs the sides in turn, at least three times and until their best times have settled, or
// for some forty seconds, and prints one line per goal from the best time of each side.
void Compare(const Comparison& comparison);

// A line of the table that is no comparison of times.
void PrintLine(const std::string& work, const std::string& measured, const std::string& target,
               bool isMet);

// A line that says why something was not measured.
void PrintNote(const std::string& work, const std::string& note);

}  // namespace bench
