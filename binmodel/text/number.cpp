#include "binmodel/text/number.h"

#include <array>
#include <charconv>
#include <cmath>
#include <cstdint>
#include <cstdlib>
#include <system_error>

namespace MCBinModel {

namespace {

constexpr ParsedNumber kNoNumber{NumberKind::kText, 0.0};

bool IsBlank(char c) { return c == ' ' || c == '\t'; }

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
  const bool plus = text.size() > 1 && text[0] == '+';
  if (plus) text.remove_prefix(1);
  if (text.empty() || (plus && text[0] == '-')) return kNoNumber;
  double value = 0.0;
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

std::string FormatShareOf(double part, double whole) {
  return whole > 0.0 ? FormatShare(part / whole) : "-";
}

}  // namespace MCBinModel
