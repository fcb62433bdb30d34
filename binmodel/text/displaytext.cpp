#include "binmodel/text/displaytext.h"

#include <fmt/format.h>

#include <array>
#include <cstdint>

namespace MCBinModel {

namespace {

struct CodePoint {
  std::uint32_t value;
  std::size_t bytes;  // 0: not UTF-8
};

// The code point at the front of `text`, which is not empty.
CodePoint FirstCodePoint(std::string_view text) {
  const auto byteAt = [text](std::size_t i) { return static_cast<unsigned char>(text[i]); };
  const std::uint32_t first = byteAt(0);
  if (first < 0x80) return {first, 1};
  const std::size_t bytes = first >= 0xF0 ? 4 : first >= 0xE0 ? 3 : 2;
  if (first < 0xC2 || first > 0xF4 || text.size() < bytes) return {0, 0};
  std::uint32_t value = first & (0x7FU >> bytes);
  for (std::size_t i = 1; i < bytes; ++i) {
    if ((byteAt(i) & 0xC0U) != 0x80U) return {0, 0};
    value = (value << 6) | (byteAt(i) & 0x3FU);
  }
  const bool overlong = (bytes == 3 && value < 0x800) || (bytes == 4 && value < 0x10000);
  const bool surrogate = value >= 0xD800 && value <= 0xDFFF;
  if (overlong || surrogate || value > 0x10FFFF) return {0, 0};
  return {value, bytes};
}

bool IsControl(std::uint32_t codePoint) {
  return codePoint < 0x20 || (codePoint >= 0x7F && codePoint < 0xA0);
}

struct Range {
  std::uint32_t first;
  std::uint32_t last;
};

// The scripts that terminals draw two columns wide.
constexpr std::array<Range, 8> kWide = {{{0x1100, 0x115F},
                                         {0x2E80, 0xA4CF},
                                         {0xAC00, 0xD7A3},
                                         {0xF900, 0xFAFF},
                                         {0xFE30, 0xFE6F},
                                         {0xFF00, 0xFF60},
                                         {0x1F300, 0x1FAFF},
                                         {0x20000, 0x3FFFD}}};

std::size_t WidthOf(std::uint32_t codePoint) {
  const bool combining = codePoint >= 0x300 && codePoint <= 0x36F;
  if (combining) return 0;
  for (const Range& range : kWide) {
    if (codePoint >= range.first && codePoint <= range.last) return 2;
  }
  return 1;
}

std::string Escaped(unsigned char byte) {
  if (byte == '\n') return "\\n";
  if (byte == '\r') return "\\r";
  if (byte == '\t') return "\\t";
  return fmt::format("\\x{:02X}", static_cast<unsigned>(byte));
}

}  // namespace

std::string PrintableText(std::string_view text) {
  std::string printable;
  printable.reserve(text.size());
  while (!text.empty()) {
    const CodePoint next = FirstCodePoint(text);
    const std::size_t bytes = next.bytes == 0 ? 1 : next.bytes;
    if (next.bytes == 0 || IsControl(next.value)) {
      for (const char c : text.substr(0, bytes))
        printable += Escaped(static_cast<unsigned char>(c));
    } else {
      printable += text.substr(0, bytes);
    }
    text.remove_prefix(bytes);
  }
  return printable;
}

std::string ElideText(std::string_view text, std::size_t width) {
  const std::size_t longestNeeded = 4 * (width + 1);  // bytes of a code point
  std::string printable = PrintableText(text.substr(0, longestNeeded));
  if (text.size() <= longestNeeded && DisplayWidth(printable) <= width) return printable;

  std::string_view left = printable;
  std::string elided;
  std::size_t used = 1;  // the ellipsis
  while (!left.empty()) {
    const CodePoint next = FirstCodePoint(left);
    used += WidthOf(next.value);
    if (used > width) break;
    elided += left.substr(0, next.bytes);
    left.remove_prefix(next.bytes);
  }
  return elided + "\u2026";
}

std::string QuotedText(std::string_view text) { return "'" + ElideText(text, 60) + "'"; }

std::size_t DisplayWidth(std::string_view text) {
  std::size_t width = 0;
  while (!text.empty()) {
    const CodePoint next = FirstCodePoint(text);
    width += WidthOf(next.value);
    text.remove_prefix(next.bytes == 0 ? 1 : next.bytes);
  }
  return width;
}

bool IsUtf8(std::string_view text) {
  while (!text.empty()) {
    const std::size_t bytes = FirstCodePoint(text).bytes;
    if (bytes == 0) return false;
    text.remove_prefix(bytes);
  }
  return true;
}

}  // namespace MCBinModel
