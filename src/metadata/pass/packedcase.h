#pragma once

#include <algorithm>
#include <bit>
#include <cstddef>
#include <cstdint>

namespace MCBinning {

// A case that weighs 1, in one word: the place of its value among all values, and its target in the
// low kTargetBits. Half the bytes to sort, and their order is that of numbers.
//
// The target takes its bits from the exponent. What is left holds 0 and, with 1 bit, magnitudes
// between 2^-384 and 2^640; with 5 bits, between 2^-24 and 2^40.
template <int kTargetBits>
class PackedCase {
  static_assert(kTargetBits > 0);  // so that neither infinities nor NaN are held

 public:
  static constexpr unsigned int kTargetCount = 1U << kTargetBits;

  // Whether a case of this value and target can be packed.
  static bool CanHold(double value, unsigned int target) {
    const Bits magnitude = MagnitudeOf(value);
    const bool holdsValue = (magnitude == 0) | (magnitude - kBelowLeast - 1 < kMagnitudes);
    return holdsValue & (target < kTargetCount);
  }

  // Whether all of the values can be packed with any target. In 64-bit integers without a jump,
  // which vector instructions do some at a time.
  static bool CanHoldAll(const double* values, std::size_t count) {
    constexpr int kMagnitudeBits = 63 - kTargetBits;
    static_assert(kMagnitudes == (Bits{1} << kMagnitudeBits) - 1);
    Bits all = 0;
    for (std::size_t i = 0; i < count; ++i) {
      const Bits magnitude = MagnitudeOf(values[i]);
      const Bits isNonzero = (magnitude | (0 - magnitude)) >> 63;
      const Bits place = magnitude - kBelowLeast;  // from 1 to kMagnitudes, but for 0
      all |= (place | (place - 1)) & (0 - isNonzero);
    }
    return all >> kMagnitudeBits == 0;
  }

  PackedCase() = default;

  // What cannot be held gives some other case.
  PackedCase(double value, unsigned int target) {
    const auto sign =
        static_cast<Bits>(std::bit_cast<std::int64_t>(value) >> 63);  // all bits alike
    const Bits magnitude = std::max(MagnitudeOf(value), kBelowLeast) - kBelowLeast;
    fWord = ((magnitude ^ sign) + kPlaceOfZero) << kTargetBits | target;
  }

  double GetValue() const {
    const Bits distance = (fWord >> kTargetBits) - kPlaceOfZero;
    const auto sign = static_cast<Bits>(static_cast<std::int64_t>(distance) >> 63);
    const Bits magnitude = distance ^ sign;
    return std::bit_cast<double>((magnitude == 0 ? 0 : magnitude + kBelowLeast) | (sign & kSign));
  }

  std::uint8_t GetTarget() const { return static_cast<std::uint8_t>(fWord % kTargetCount); }

  // Ascends with the value; the same for -0.0, which has a place of its own, and 0.0.
  std::uint64_t GetKey() const {
    const Bits place = fWord >> kTargetBits;
    return place + (place == kPlaceOfZero - 1 ? 1 : 0);
  }

 private:
  using Bits = std::uint64_t;

  static constexpr Bits kSign = Bits{1} << 63;
  static constexpr Bits kPlaceOfZero = kSign >> kTargetBits;
  static constexpr Bits kExponents = Bits{2048} >> kTargetBits;
  // The magnitudes that are held lie above this one, three eighths of their exponents below 1.
  static constexpr Bits kBelowLeast = (Bits{1023} - kExponents / 8 * 3) << 52;
  static constexpr Bits kMagnitudes = kPlaceOfZero - 1;

  static Bits MagnitudeOf(double value) { return std::bit_cast<Bits>(value) & ~kSign; }

  Bits fWord = 0;
};

}  // namespace MCBinning
