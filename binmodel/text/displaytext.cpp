#include "binmodel/text/displaytext.h"

#include <fmt/format.h>
#include <utf8proc.h>

#include "binmodel/text/utf8.h"

namespace MCBinModel {

namespace {

std::string EscapedByte(unsigned char byte) {
  if (byte == '\n') return "\\n";
  if (byte == '\r') return "\\r";
  if (byte == '\t') return "\\t";
  return fmt::format("\\x{:02X}", static_cast<unsigned>(byte));
}

// Takes what is read as one character off `text`, which is not empty.
std::string_view TakeCluster(std::string_view& text) {
  const std::string_view whole = text;
  utf8proc_int32_t state = 0;
  CodePoint last = TakeCodePoint(text);
  while (!text.empty()) {
    std::string_view behind = text;
    const CodePoint next = TakeCodePoint(behind);
    if (utf8proc_grapheme_break_stateful(static_cast<utf8proc_int32_t>(last.value),
                                         static_cast<utf8proc_int32_t>(next.value), &state)) {
      break;
    }
    text = behind;
    last = next;
  }
  return whole.substr(0, whole.size() - text.size());
}

// At most `bytes` of it, without a part of a code point at the end.
std::string_view Beginning(std::string_view text, std::size_t bytes) {
  if (text.size() <= bytes) return text;
  const auto isContinuation = [&](std::size_t i) {
    return (static_cast<unsigned char>(text[i]) & 0xC0U) == 0x80U;
  };
  std::size_t end = bytes;
  while (end > 0 && bytes - end < 3 && isContinuation(end)) --end;
  return text.substr(0, end);
}

}  // namespace

std::string PrintableText(std::string_view text) {
  if (IsPlain(text)) return std::string(text);
  std::string printable;
  printable.reserve(text.size());
  while (!text.empty()) {
    const CodePoint next = TakeCodePoint(text);
    if (!next.isUtf8 || IsControl(next.value)) {
      for (const char c : next.bytes) printable += EscapedByte(static_cast<unsigned char>(c));
    } else if (IsHidden(next.value)) {
      printable += fmt::format("\\u{:04X}", next.value);
    } else {
      printable += next.bytes;
    }
  }
  return printable;
}

std::string ElideText(std::string_view text, std::size_t width) {
  constexpr std::size_t kMostColumnBytes = 16;  // a letter may carry marks, but not without end
  const std::string_view beginning = Beginning(text, kMostColumnBytes * (width + 1));
  std::string printable = PrintableText(beginning);
  if (beginning.size() == text.size() && DisplayWidth(printable) <= width) return printable;

  std::string_view left = printable;
  std::string elided;
  std::size_t used = 1;  // the ellipsis
  while (!left.empty()) {
    const std::string_view next = TakeCluster(left);
    used += DisplayWidth(next);
    if (used > width) break;
    elided += next;
  }
  return elided + "\u2026";
}

std::string ElideMiddle(std::string_view text, std::size_t width) {
  const std::string printable = PrintableText(text);
  if (DisplayWidth(printable) <= width) return printable;
  const std::string beginning = ElideText(printable, width - (width - 1) / 2);
  std::size_t left = DisplayWidth(printable);
  std::string_view end = printable;
  while (left > (width - 1) / 2) left -= DisplayWidth(TakeCluster(end));
  return beginning + std::string(end);
}

std::string QuotedText(std::string_view text) { return "'" + ElideText(text, 60) + "'"; }

std::size_t DisplayWidth(std::string_view text) {
  if (IsPlain(text)) return text.size();
  std::size_t width = 0;
  while (!text.empty()) {
    const CodePoint next = TakeCodePoint(text);
    const int columns =
        next.isUtf8 ? utf8proc_charwidth(static_cast<utf8proc_int32_t>(next.value)) : 1;
    width += static_cast<std::size_t>(columns);
  }
  return width;
}

}  // namespace MCBinModel
