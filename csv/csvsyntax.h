#pragma once

#include <cstddef>
#include <cstdint>
#include <string_view>

namespace MCBin {

// Where the fields and the records of a CSV text end.
//
// Texts are given by their begin and end. Requires *end == '\0', as the loops look for nothing
// else; other NUL bytes are none of a CSV file's.
class CsvSyntax {
 public:
  enum class Trouble {
    kNone,
    kTextAfterQuote,
    kNul,
    kOpen,  // the text ends within the quotes
  };

  struct Quoted {
    const char* end;   // of what is between the quotes
    const char* next;  // what follows the closing quote, or where the trouble is
    bool hasDoubledQuotes;
    std::uint64_t lineEnds;  // up to `next`
    Trouble trouble;
  };

  // `delimiter` is not a quote or a line end.
  explicit CsvSyntax(char delimiter);

  char GetDelimiter() const { return fDelimiter; }

  // Whether a field without quotes ends before the character: at a delimiter, a line end, a NUL.
  bool EndsField(char c) const { return fEndsField[static_cast<unsigned char>(c)]; }

  // The end of a field without quotes.
  const char* FindFieldEnd(const char* at) const {
    while (!EndsField(*at)) ++at;
    return at;
  }

  // Reads the quoted field that opens there.
  Quoted ReadQuoted(const char* open, const char* end) const;

  // Makes doubled quotes single: writes to `to`, which may be where the text is, and answers how
  // many characters that were.
  static std::size_t Undouble(std::string_view text, char* to);

  // What follows the last record that ends before `end`; `begin` when none does. Requires that a
  // record begins at `begin`. The last one may have any trouble.
  const char* FindLastRecordEnd(const char* begin, const char* end) const;

  // How many lines end there: with LF, CRLF or CR. Requires that `end` does not part a CRLF.
  static std::uint64_t CountLineEnds(const char* begin, const char* end);

 private:
  const char* FindLastLineEnd(const char* begin, const char* end, const char* textEnd) const;
  bool OpensField(const char* quote, const char* begin) const;

  const char fDelimiter;
  bool fEndsField[256] = {};
};

}  // namespace MCBin
