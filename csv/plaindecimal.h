#pragma once

#include <array>
#include <bit>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <optional>

namespace MCBin {

// Plain decimals such as -12.75, which most fields are: an optional minus, digits with or
// without a point, at most 15 of them. A whole number below 2^53 and a power of ten up to
// 10^22 are doubles, so their quotient is the correctly rounded value.
class PlainDecimal {
 public:
  // Characters behind the text that are looked at, too.
  static constexpr std::size_t kLookAhead = 8;

  // Takes in characters from `at` on as long as they belong to a decimal, and returns the first
  // that does not. Requires a character after the text that does not, either, and kLookAhead that
  // can be read.
  const char* Read(const char* at) {
    fIsNegative = *at == '-';
    at += fIsNegative ? 1 : 0;
    const char* const wholes = at;
    at = ReadDigits(at);
    fDigitCount = at - wholes;
    fDecimalCount = 0;
    if (*at != '.') return at;
    const char* const decimals = ++at;
    at = ReadManyDigits(at);
    fDecimalCount = at - decimals;
    fDigitCount += fDecimalCount;
    return at;
  }

  // What was read has digits behind a point.
  bool HasDecimals() const { return fDecimalCount > 0; }

  // The value of what was read; nothing when it has no digit, or too many.
  std::optional<double> GetValue() const {
    if (fDigitCount == 0 || fDigitCount > kMaxDigits) return std::nullopt;
    const double magnitude = static_cast<double>(static_cast<std::int64_t>(fDigits)) /
                             kPowersOfTen[static_cast<std::size_t>(fDecimalCount)];
    const std::uint64_t sign = std::uint64_t{fIsNegative} << 63;  // no jump: half of them are
    return std::bit_cast<double>(std::bit_cast<std::uint64_t>(magnitude) | sign);
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

  // Eight at a time: without a jump for each digit, whose number the processor could not foresee.
  const char* ReadManyDigits(const char* at) {
    if constexpr (std::endian::native != std::endian::little) return ReadDigits(at);
    std::uint64_t text = 0;
    std::memcpy(&text, at, sizeof text);
    constexpr std::uint64_t kEach = 0x0101010101010101;
    const std::uint64_t fromZero = text ^ (kEach * '0');  // of a digit its value, else 10 or more
    const std::uint64_t noDigits = (fromZero | (fromZero + kEach * 6)) & (kEach * 0xF0);
    const int count = std::countr_zero(noDigits) / 8;
    if (count == 0) return at;
    // To the end, as if zeros stood before them; then pairs, fours and eights of them.
    std::uint64_t digits = fromZero << (64 - 8 * count);
    digits = digits * 10 + (digits >> 8);
    constexpr std::uint64_t kEachPair = 0x000000FF000000FF;
    digits = ((digits & kEachPair) * (100 + (1000000ULL << 32)) +
              ((digits >> 16) & kEachPair) * (1 + (10000ULL << 32))) >>
             32;
    fDigits = fDigits * kWholePowersOfTen[static_cast<std::size_t>(count)] + digits;
    return count == 8 ? ReadDigits(at + count) : at + count;
  }

  static constexpr std::array<std::uint64_t, 9> kWholePowersOfTen = {
      1, 10, 100, 1000, 10000, 100000, 1000000, 10000000, 100000000};

  bool fIsNegative = false;
  std::uint64_t fDigits = 0;
  std::ptrdiff_t fDigitCount = 0;
  std::ptrdiff_t fDecimalCount = 0;
};

}  // namespace MCBin
