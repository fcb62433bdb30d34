#include "cli/terminal/progressbar.h"

#include <fmt/format.h>
#include <unistd.h>

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <string_view>
#include <utility>

namespace MCBin {

namespace {

bool IsTerminal() {
  const char* const kind = std::getenv("TERM");
  const bool canMove = kind != nullptr && std::string_view(kind) != "dumb";
  return canMove && isatty(STDERR_FILENO) == 1;
}

std::string FormatDuration(double seconds) {
  const long whole = std::lround(std::min(seconds, 359999.0));
  if (whole < 3600) return fmt::format("{}:{:02}", whole / 60, whole % 60);
  return fmt::format("{}:{:02}:{:02}", whole / 3600, whole / 60 % 60, whole % 60);
}

}  // namespace

ProgressBar::ProgressBar(bool enabled) : fVisible(enabled && IsTerminal()) {}

ProgressBar::~ProgressBar() { Finish(); }

void ProgressBar::Start(std::string step, std::uint64_t total, std::string unit, double scale) {
  Finish();
  fStep = std::move(step);
  fTotal = total;
  fUnit = std::move(unit);
  fScale = scale;
  fStart = Clock::now();
  fLastDraw = fStart;
}

void ProgressBar::StartBytes(std::string step, std::uint64_t total) {
  constexpr double kBytesPerMB = 1e6;
  Start(std::move(step), total, "MB", kBytesPerMB);
}

void ProgressBar::Update(std::uint64_t done) {
  if (!fVisible) return;
  const auto now = Clock::now();
  if (now - fLastDraw < std::chrono::milliseconds(100)) return;
  fLastDraw = now;
  Draw(static_cast<double>(done), std::chrono::duration<double>(now - fStart).count());
}

void ProgressBar::Draw(double done, double seconds) {
  const double rate = seconds > 0.0 ? done / seconds : 0.0;
  const std::string speed = fmt::format("{:.0f} {}/s", rate / fScale, fUnit);
  const std::string line =
      fTotal == 0 ? fmt::format("\r{} {:.0f} {}  {}\x1b[K", fStep, done / fScale, fUnit, speed)
                  : fmt::format("\r{} {}  {}  {} left\x1b[K", fStep, FormatBar(done), speed,
                                FormatDuration(GetSecondsLeft(done, rate)));
  std::fputs(line.c_str(), stderr);
  std::fflush(stderr);
  fDrawn = true;
}

std::string ProgressBar::FormatBar(double done) const {
  constexpr int kBarWidth = 24;
  const double share = std::min(1.0, done / static_cast<double>(fTotal));
  const int filled = static_cast<int>(share * kBarWidth);
  return fmt::format("[{:#<{}}{:.<{}}] {:3.0f}%", "", filled, "", kBarWidth - filled,
                     100.0 * share);
}

double ProgressBar::GetSecondsLeft(double done, double rate) const {
  return rate > 0.0 ? std::max(0.0, static_cast<double>(fTotal) - done) / rate : 0.0;
}

void ProgressBar::Finish() {
  if (fDrawn) {
    std::fputs("\r\x1b[K", stderr);
    std::fflush(stderr);
  }
  fDrawn = false;
}

}  // namespace MCBin
