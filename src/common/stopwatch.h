#pragma once

#include <ctime>

namespace MCBinning {

// Processor time since its making, as progress reports give it.
class Stopwatch {
 public:
  Stopwatch() : fStart(std::clock()) {}

  double GetSeconds() const { return static_cast<double>(std::clock() - fStart) / 1000000.0; }

 private:
  std::clock_t fStart;
};

}  // namespace MCBinning
