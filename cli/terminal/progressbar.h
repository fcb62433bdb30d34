#pragma once

#include <chrono>
#include <cstdint>
#include <string>

namespace MCBin {

// One line on standard error: what is done, a bar, rate and remaining time. Draws only on
// a terminal, at most ten times a second, and wipes the line when it is finished.
class ProgressBar {
 public:
  // `enabled` false draws nothing, wherever standard error goes.
  explicit ProgressBar(bool enabled);
  ~ProgressBar();
  ProgressBar(const ProgressBar&) = delete;
  ProgressBar& operator=(const ProgressBar&) = delete;

  bool IsVisible() const { return fVisible; }

  // Begins a step of `total` things, 0 if that is unknown. `scale` of them are shown as one
  // `unit`.
  void Start(std::string step, std::uint64_t total, std::string unit, double scale);

  // The same of a step that reads so many bytes.
  void StartBytes(std::string step, std::uint64_t total);
  void Update(std::uint64_t done);
  void Finish();

 private:
  using Clock = std::chrono::steady_clock;

  void Draw(double done, double seconds);
  std::string FormatBar(double done) const;
  double GetSecondsLeft(double done, double rate) const;

  const bool fVisible;
  bool fDrawn = false;
  std::string fStep;
  std::uint64_t fTotal = 0;
  std::string fUnit;
  double fScale = 1.0;
  Clock::time_point fStart;
  Clock::time_point fLastDraw;
};

}  // namespace MCBin
