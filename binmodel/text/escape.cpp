#include "binmodel/text/escape.h"

#include <fmt/format.h>

#include <algorithm>

#include "binmodel/text/displaytext.h"
#include "binmodel/text/utf8.h"

namespace MCBinModel {

namespace {

constexpr const char* kHtmlMarkup = "&<>\"'";

// Of one of these.
const char* HtmlEntity(char c) {
  switch (c) {
    case '&':
      return "&amp;";
    case '<':
      return "&lt;";
    case '>':
      return "&gt;";
    case '"':
      return "&quot;";
    default:
      return "&#39;";
  }
}

bool IsXmlCharacter(const CodePoint& c) {
  if (!c.isUtf8 || c.value == 0xFFFE || c.value == 0xFFFF) return false;
  return c.value >= 0x20 || c.value == '\t' || c.value == '\n' || c.value == '\r';
}

// As UTF-16 has it.
std::string JsonEscape(std::uint32_t c) {
  constexpr std::uint32_t kFirstBeyond = 0x10000;
  if (c < kFirstBeyond) return fmt::format("\\u{:04x}", c);
  const std::uint32_t pair = c - kFirstBeyond;
  return fmt::format("\\u{:04x}\\u{:04x}", 0xD800 + (pair >> 10), 0xDC00 + (pair & 0x3FF));
}

bool NeedsReference(std::uint32_t c) {
  return IsControl(c) || IsHidden(c) || c == '&' || c == '<' || c == '>' || c == '"';
}

}  // namespace

std::string QuoteDoubled(std::string_view text, char quote) {
  std::string quoted(1, quote);
  for (const char c : text) {
    if (c == quote) quoted += quote;
    quoted += c;
  }
  return quoted + quote;
}

void AppendField(std::string& line, std::string_view text, bool quoted, char delimiter) {
  const auto isSpecial = [delimiter](char c) {
    return c == delimiter || c == '"' || c == '\n' || c == '\r';
  };
  if (!quoted && std::none_of(text.begin(), text.end(), isSpecial)) {
    line += text;
    return;
  }
  line += QuoteDoubled(text, '"');
}

std::string JsonText(std::string_view text) {
  std::string escaped = "\"";
  while (!text.empty()) {
    const CodePoint next = TakeCodePoint(text);
    if (!next.isUtf8) {
      escaped += "\\ufffd";
    } else if (IsControl(next.value) || IsHidden(next.value)) {
      escaped += JsonEscape(next.value);
    } else {
      if (next.value == '"' || next.value == '\\') escaped += '\\';
      escaped += next.bytes;
    }
  }
  return escaped + '"';
}

std::string HtmlText(std::string_view text) {
  const std::string printable = PrintableText(text);
  std::string escaped;
  std::size_t from = 0;
  for (;;) {
    const std::size_t markup = printable.find_first_of(kHtmlMarkup, from);
    escaped.append(printable, from, markup - from);
    if (markup == std::string::npos) return escaped;
    escaped += HtmlEntity(printable[markup]);
    from = markup + 1;
  }
}

std::optional<std::string> XmlText(std::string_view text) {
  std::string escaped;
  while (!text.empty()) {
    const CodePoint next = TakeCodePoint(text);
    if (!IsXmlCharacter(next)) return std::nullopt;
    if (NeedsReference(next.value)) {
      escaped += fmt::format("&#{};", next.value);
    } else {
      escaped += next.bytes;
    }
  }
  return escaped;
}

}  // namespace MCBinModel
