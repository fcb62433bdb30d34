#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <optional>

namespace MCBin {

// Plain decimals such as -12.75, which most fields are: an optional minus, digits with or
// without a point, at most 15 of them. A whole number below 2^53 and a power of ten up to
// 10^22 are doubles, so their quotient is the correctly rounded value.
class PlainDecimal {
 public:
  // Takes in characters from `at` on as long as they belong to a decimal, and returns the first
  // that does not. Requires a character after the text that does not, either.
  const char* Read(const char* at) {
    fIsNegative = *at == '-';
    if (fIsNegative) ++at;
    const char* const wholes = at;
    at = ReadDigits(at);
    fDigitCount = at - wholes;
    fDecimalCount = 0;
    if (*at != '.') return at;
    const char* const decimals = ++at;
    at = ReadDigits(at);
    fDecimalCount = at - decimals;
    fDigitCount += fDecimalCount;
    return at;
  }

  // The value of what was read; nothing when it has no digit, or too many.
  std::optional<double> GetValue() const {
    if (fDigitCount == 0 || fDigitCount > kMaxDigits) return std::nullopt;
    const double magnitude = static_cast<double>(static_cast<std::int64_t>(fDigits)) /
                             kPowersOfTen[static_cast<std::size_t>(fDecimalCount)];
    return fIsNegative ? -magnitude : magnitude;
  }

 private:
  static constexpr std::ptrdiff_t kMaxDigits = 15;
  static constexpr std::array<double, kMaxDigits + 1> kPowersOfTen = {
      1.0, 1e1, 1e2, 1e3, 1e4, 1e5, 1e6, 1e7, 1e8, 1e9, 1e10, 1e11, 1e12, 1e13, 1e14, 1e15};

  const char* ReadDigits(const char* at) {
    for (; *at >= '0' && *at <= '9'; ++at) {
      fDigits = fDigits * 10 + static_cast<std::uint64_t>(*at - '0');  // may wrap, if too many
    }
    return at;
  }

  bool fIsNegative = false;
  std::uint64_t fDigits = 0;
  std::ptrdiff_t fDigitCount = 0;
  std::ptrdiff_t fDecimalCount = 0;
};

}  // namespace MCBin
