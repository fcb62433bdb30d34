#include "cli/number.h"

#include <array>
#include <charconv>
#include <cmath>
#include <cstdint>
#include <cstdlib>
#include <system_error>

namespace MCBin {

namespace {

constexpr ParsedNumber kNoNumber{NumberKind::kText, 0.0};

bool IsDigit(char c) { return c >= '0' && c <= '9'; }
bool IsBlank(char c) { return c == ' ' || c == '\t'; }

// Plain decimals such as -12.75, which most fields are. A whole number below 2^53 and a
// power of ten up to 10^22 are doubles, so their quotient is the correctly rounded value.
// False when the text is anything else.
bool ParsePlainDecimal(std::string_view text, double& value) {
  static constexpr std::array<double, 16> kPowersOfTen = {
      1.0, 1e1, 1e2, 1e3, 1e4, 1e5, 1e6, 1e7, 1e8, 1e9, 1e10, 1e11, 1e12, 1e13, 1e14, 1e15};
  constexpr std::size_t kMaxDigits = 15;

  const bool negative = !text.empty() && text.front() == '-';
  if (negative) text.remove_prefix(1);
  if (text.size() > kMaxDigits + 1) return false;

  std::int64_t digits = 0;
  std::size_t digitCount = 0;
  std::size_t decimals = 0;
  bool pointSeen = false;
  for (const char c : text) {
    if (IsDigit(c)) {
      digits = digits * 10 + (c - '0');
      ++digitCount;
      if (pointSeen) ++decimals;
    } else if (c == '.' && !pointSeen) {
      pointSeen = true;
    } else {
      return false;
    }
  }
  if (digitCount == 0 || digitCount > kMaxDigits) return false;
  const double magnitude = static_cast<double>(digits) / kPowersOfTen[decimals];
  value = negative ? -magnitude : magnitude;
  return true;
}

// from_chars says only "out of range", for numbers too large and too small alike.
ParsedNumber ParseOutOfRange(std::string_view text) {
  const double value = std::strtod(std::string(text).c_str(), nullptr);
  return std::isinf(value) ? ParsedNumber{NumberKind::kInfinite, 0.0}
                           : ParsedNumber{NumberKind::kNumber, value};
}

template <typename... Format>
std::string ToText(double value, Format... format) {
  std::array<char, 400> buffer{};  // the largest double has 309 digits before its point
  const auto end = std::to_chars(buffer.data(), buffer.data() + buffer.size(), value, format...);
  return {buffer.data(), end.ptr};
}

}  // namespace

std::string_view TrimBlanks(std::string_view text) {
  while (!text.empty() && IsBlank(text.front())) text.remove_prefix(1);
  while (!text.empty() && IsBlank(text.back())) text.remove_suffix(1);
  return text;
}

ParsedNumber ParseNumber(std::string_view text) {
  text = TrimBlanks(text);
  double value = 0.0;
  if (ParsePlainDecimal(text, value)) return {NumberKind::kNumber, value};

  const bool plus = text.size() > 1 && text[0] == '+';
  if (plus) text.remove_prefix(1);
  if (text.empty() || (plus && text[0] == '-')) return kNoNumber;
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), value);
  if (end != text.data() + text.size()) return kNoNumber;
  if (error == std::errc::result_out_of_range) return ParseOutOfRange(text);
  if (error != std::errc()) return kNoNumber;
  if (std::isnan(value)) return {NumberKind::kNaN, 0.0};
  if (std::isinf(value)) return {NumberKind::kInfinite, 0.0};
  return {NumberKind::kNumber, value};
}

std::string FormatNumber(double value) {
  constexpr double kExactWholes = 1e15;
  const bool plainWhole = std::abs(value) < kExactWholes && value == std::trunc(value);
  if (plainWhole) return std::to_string(static_cast<std::int64_t>(value));
  return ToText(value);
}

std::string FormatFixed(double value, int decimals) {
  return ToText(value, std::chars_format::fixed, decimals);
}

std::string FormatShare(double share) { return FormatFixed(100.0 * share, 1) + "%"; }

}  // namespace MCBin
