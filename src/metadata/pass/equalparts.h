#pragma once

#include <cmath>
#include <cstddef>
#include <cstdint>

namespace MCBinning {

// Equal parts of a range of values, numbered upwards. What lies below the range is in the first
// one, what lies above it, or a NaN, in the last one.
class EqualParts {
 public:
  EqualParts() = default;  // not useful

  // From 1 to 2^30 parts.
  EqualParts(double low, double high, std::size_t count)
      : fLow(low),
        fScale(static_cast<double>(count) / (high - low)),
        fLast(static_cast<double>(count - 1)) {}

  // Not where the range is empty, or larger than any number.
  bool IsUseful() const { return std::isfinite(fLow) && std::isfinite(fScale) && fScale > 0.0; }

  // Never descends while the value ascends. Requires IsUseful().
  std::int32_t PartOf(double value) const {
    const double position = (value - fLow) * fScale;
    // In this order vector instructions find some at a time.
    const double aboveLow = position <= 0.0 ? 0.0 : position;
    return static_cast<std::int32_t>(aboveLow < fLast ? aboveLow : fLast);
  }

  // The same, sooner, for a value that is in neither the first nor the last part.
  std::int32_t InnerPartOf(double value) const {
    return static_cast<std::int32_t>((value - fLow) * fScale);
  }

 private:
  double fLow = 0.0;
  double fScale = 0.0;
  double fLast = 0.0;
};

}  // namespace MCBinning
