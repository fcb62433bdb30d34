#include "decimal.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cstdint>
#include <cstring>
#include <string>

namespace MCBinPython {

namespace {

constexpr std::size_t kMostWords = 8;
using Words = std::array<std::uint32_t, kMostWords>;  // lowest first

// Divides by 10^9 and answers the remainder.
std::uint32_t TakeNineDigits(Words& words) {
  constexpr std::uint64_t kBillion = 1'000'000'000;
  std::uint64_t remainder = 0;
  for (auto word = words.rbegin(); word != words.rend(); ++word) {
    const std::uint64_t part = (remainder << 32) | *word;
    *word = static_cast<std::uint32_t>(part / kBillion);
    remainder = part % kBillion;
  }
  return static_cast<std::uint32_t>(remainder);
}

void Negate(Words& words) {
  std::uint64_t carry = 1;
  for (std::uint32_t& word : words) {
    carry += static_cast<std::uint32_t>(~word);
    word = static_cast<std::uint32_t>(carry);
    carry >>= 32;
  }
}

}  // namespace

double ReadDecimal(const char* number, const DecimalFormat& format) {
  const bool isNegative = (static_cast<unsigned char>(number[format.bytes - 1]) & 0x80) != 0;
  Words words;
  words.fill(isNegative ? 0xFFFFFFFFU : 0U);
  std::memcpy(words.data(), number, std::min(format.bytes, sizeof(Words)));
  if (isNegative) Negate(words);

  std::string digits;
  while (std::any_of(words.begin(), words.end(), [](std::uint32_t word) { return word != 0; })) {
    const std::string nine = std::to_string(TakeNineDigits(words));
    digits.insert(0, std::string(9 - nine.size(), '0') + nine);
  }
  if (digits.empty()) return 0.0;
  digits += "e" + std::to_string(-format.scale);
  double value = 0.0;
  std::from_chars(digits.data(), digits.data() + digits.size(), value);
  return isNegative ? -value : value;
}

}  // namespace MCBinPython
