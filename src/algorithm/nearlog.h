#pragma once

#include <array>
#include <bit>
#include <cstddef>
#include <cstdint>

namespace MCBinning {

// Equal parts of [1, 2), for NearLog().
class LogParts {
 public:
  struct Part {
    double reciprocal;  // of its middle
    double log;         // of its middle
  };

  static constexpr int kBits = 7;

  constexpr LogParts() : fParts() {
    for (std::size_t i = 0; i < fParts.size(); ++i) {
      const double middle =
          1.0 + (static_cast<double>(i) + 0.5) / static_cast<double>(fParts.size());
      fParts[i] = {1.0 / middle, LogOf(middle)};
    }
  }

  constexpr const Part& operator[](std::size_t index) const { return fParts[index]; }

 private:
  // log x = 2 (z + z^3 / 3 + z^5 / 5 + ...) where z = (x - 1) / (x + 1), at most 1/3.
  static constexpr double LogOf(double x) {
    const double z = (x - 1.0) / (x + 1.0);
    double power = z;
    double sum = 0.0;
    for (int k = 1; k < 40; k += 2, power *= z * z) sum += power / k;
    return 2.0 * sum;
  }

  std::array<Part, std::size_t{1} << kBits> fParts;
};

// The natural logarithm of a normal number above 0, to 2e-13: for bounds, in a fraction of the
// time of std::log. Of 0 the answer is some finite number.
//
// With x = 2^e m and 1 <= m < 2, and c the middle of the part of [1, 2) that m lies in,
// log x = e log 2 + log c + log(1 + r) where r = m / c - 1, at most 1/256 off 0. Of the last one's
// series the first four terms are taken: what is left out is below |r|^5 / 4.
inline double NearLog(double x) {
  static constexpr LogParts kParts;
  constexpr int kMantissaBits = 52;
  constexpr std::uint64_t kMantissa = (std::uint64_t{1} << kMantissaBits) - 1;
  constexpr double kLogOf2 = 0.69314718055994530942;

  const auto bits = std::bit_cast<std::uint64_t>(x);
  const auto exponent = static_cast<double>(static_cast<int>(bits >> kMantissaBits) - 1023);
  const auto m = std::bit_cast<double>((bits & kMantissa) | std::bit_cast<std::uint64_t>(1.0));
  const LogParts::Part& part = kParts[(bits & kMantissa) >> (kMantissaBits - LogParts::kBits)];
  const double r = m * part.reciprocal - 1.0;
  return exponent * kLogOf2 + part.log + (r + r * r * (-1.0 / 2.0 + r * (1.0 / 3.0 - r / 4.0)));
}

// x log x, and 0 for 0.
inline double NearXLogX(double x) { return x * NearLog(x); }

}  // namespace MCBinning
