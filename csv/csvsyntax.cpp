#include "csv/csvsyntax.h"

#include <algorithm>
#include <cstring>

namespace MCBin {

CsvSyntax::CsvSyntax(char delimiter) : fDelimiter(delimiter) {
  for (const char c : {delimiter, '\n', '\r', '\0'}) {
    fEndsField[static_cast<unsigned char>(c)] = true;
  }
}

CsvSyntax::Quoted CsvSyntax::ReadQuoted(const char* open, const char* end) const {
  Quoted field{nullptr, nullptr, false, 0, Trouble::kNone};
  for (const char* at = open + 1;; ++at) {
    switch (*at) {
      case '"':
        if (at[1] == '"') {
          field.hasDoubledQuotes = true;
          ++at;
          continue;
        }
        field.end = at;
        field.next = at + 1;
        if (!EndsField(at[1])) field.trouble = Trouble::kTextAfterQuote;
        return field;
      case '\n':
        ++field.lineEnds;
        continue;
      case '\r':
        if (at[1] != '\n') ++field.lineEnds;  // CRLF counts at its LF
        continue;
      case '\0':
        field.next = at;
        field.trouble = at == end ? Trouble::kOpen : Trouble::kNul;
        return field;
      default:
        continue;
    }
  }
}

std::size_t CsvSyntax::Undouble(std::string_view text, char* to) {
  char* const begin = to;
  for (std::size_t from = 0; from < text.size(); ++from) {
    *to++ = text[from];
    if (text[from] == '"') ++from;
  }
  return static_cast<std::size_t>(to - begin);
}

// A quote inside a field without quotes is an ordinary character.
bool CsvSyntax::OpensField(const char* quote, const char* begin) const {
  if (quote == begin) return true;
  const char before = quote[-1];
  return before == fDelimiter || before == '\n' || before == '\r';
}

// A CR that ends the text may be half of a CRLF.
const char* CsvSyntax::FindLastLineEnd(const char* begin, const char* end,
                                       const char* textEnd) const {
  const auto findLast = [begin](char c, const char* before) {
    const auto size = static_cast<std::size_t>(before - begin);
    const void* const found = size == 0 ? nullptr : memrchr(begin, c, size);
    return static_cast<const char*>(found);
  };
  const char* const lineFeed = findLast('\n', end);
  const char* const afterLineFeed = lineFeed == nullptr ? begin : lineFeed + 1;
  const bool mayBeHalf = end == textEnd && end != afterLineFeed;
  for (const char* at = mayBeHalf ? end - 1 : end; at != afterLineFeed; --at) {
    if (at[-1] == '\r') return at;
  }
  return afterLineFeed;
}

// From quote to quote: what is between a field's quotes has no record end.
const char* CsvSyntax::FindLastRecordEnd(const char* begin, const char* end) const {
  const auto findQuote = [end](const char* from) {
    const void* const found = std::memchr(from, '"', static_cast<std::size_t>(end - from));
    return found == nullptr ? end : static_cast<const char*>(found);
  };
  const char* recordEnd = begin;
  const char* outside = begin;  // no quoted field is open here
  for (const char* quote = findQuote(begin);;) {
    if (quote != end && !OpensField(quote, begin)) {
      quote = findQuote(quote + 1);
      continue;
    }
    const bool isDelimiter = quote - outside == 1 && *outside == fDelimiter;  // as a rule
    const char* const lineEnd = isDelimiter ? outside : FindLastLineEnd(outside, quote, end);
    if (lineEnd != outside) recordEnd = lineEnd;
    if (quote == end) return recordEnd;
    const char* close = findQuote(quote + 1);
    while (close != end && close[1] == '"') close = findQuote(close + 2);
    if (close == end) return recordEnd;
    outside = close + 1;
    quote = findQuote(outside);
  }
}

// In bytes, of which a register holds many, as long as those cannot overflow.
std::uint64_t CsvSyntax::CountLineEnds(const char* begin, const char* end) {
  constexpr std::ptrdiff_t kMostInByte = 255;
  std::uint64_t count = 0;
  while (begin != end) {
    const char* const stop = begin + std::min(end - begin, kMostInByte);
    unsigned char lines = 0;
    for (const char* at = begin; at != stop; ++at) {
      const bool isLineEnd = (*at == '\n') | ((*at == '\r') & (at[1] != '\n'));
      lines = static_cast<unsigned char>(lines + isLineEnd);
    }
    count += lines;
    begin = stop;
  }
  return count;
}

}  // namespace MCBin
