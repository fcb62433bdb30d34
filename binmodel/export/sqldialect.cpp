#include "binmodel/export/sqldialect.h"

#include <fmt/format.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdint>
#include <limits>

#include "binmodel/export/binexport.h"
#include "binmodel/export/exportmodel.h"
#include "binmodel/model/refusal.h"
#include "binmodel/text/displaytext.h"
#include "binmodel/text/escape.h"
#include "binmodel/text/number.h"
#include "binmodel/text/utf8.h"

namespace MCBinModel {

namespace {

// What a terminal could take for an order. Line feeds and tabs do no harm.
bool IsUnsafe(std::uint32_t codePoint) {
  return IsControl(codePoint) && codePoint != '\n' && codePoint != '\t';
}

bool IsSafe(std::string_view text) {
  while (!text.empty()) {
    if (IsUnsafe(TakeCodePoint(text).value)) return false;
  }
  return true;
}

// U&'...' with \HHHH for unsafe characters.
std::string QuoteUnicode(std::string_view text, char quote) {
  std::string escaped;
  while (!text.empty()) {
    const CodePoint next = TakeCodePoint(text);
    if (IsUnsafe(next.value)) {
      escaped += fmt::format("\\{:04X}", next.value);
    } else {
      if (next.value == '\\') escaped += '\\';
      escaped += next.bytes;
    }
  }
  return "U&" + QuoteDoubled(escaped, quote);
}

std::string QuoteStandard(std::string_view text) { return QuoteDoubled(text, '\''); }

std::string QuoteAnsi(std::string_view text) {
  return IsSafe(text) ? QuoteStandard(text) : QuoteUnicode(text, '\'');
}

// Where a backslash begins an escape. Spark reads 'a''b' as two texts, so quotes are escaped too.
std::string QuoteWithBackslashes(std::string_view text) {
  std::string quoted = "'";
  while (!text.empty()) {
    const CodePoint next = TakeCodePoint(text);
    if (IsUnsafe(next.value)) {
      quoted += fmt::format("\\u{:04X}", next.value);
    } else {
      if (next.value == '\'' || next.value == '\\') quoted += '\\';
      quoted += next.bytes;
    }
  }
  return quoted + "'";
}

// An escape string says what a backslash is, whatever standard_conforming_strings is set to.
std::string QuotePostgresql(std::string_view text) {
  const bool plain = text.find('\\') == std::string_view::npos && IsSafe(text);
  return plain ? QuoteStandard(text) : "E" + QuoteWithBackslashes(text);
}

// The text in pieces: what is safe in quotes, and a call for each unsafe character.
template <typename Quote, typename Call>
std::vector<std::string> QuotePieces(std::string_view text, Quote quote, Call call) {
  std::vector<std::string> pieces;
  std::string safe;
  const auto endSafe = [&] {
    if (!safe.empty()) pieces.push_back(quote(safe));
    safe.clear();
  };
  while (!text.empty()) {
    const CodePoint next = TakeCodePoint(text);
    if (IsUnsafe(next.value)) {
      endSafe();
      pieces.push_back(call(next));
    } else {
      safe += next.bytes;
    }
  }
  endSafe();
  return pieces;
}

std::string Concatenate(std::string_view text, const char* function) {
  const auto pieces = QuotePieces(text, QuoteStandard, [function](const CodePoint& c) {
    return fmt::format("{}({})", function, c.value);
  });
  return fmt::format("({})", fmt::join(pieces, " || "));
}

std::string QuoteSqlite(std::string_view text) {
  return IsSafe(text) ? QuoteStandard(text) : Concatenate(text, "char");
}

std::string QuoteDuckdb(std::string_view text) {
  return IsSafe(text) ? QuoteStandard(text) : Concatenate(text, "chr");
}

// CHAR() takes the bytes of a character as one number.
std::string QuoteMysql(std::string_view text) {
  if (IsSafe(text)) return QuoteWithBackslashes(text);
  const auto pieces = QuotePieces(text, QuoteWithBackslashes, [](const CodePoint& c) {
    std::uint32_t bytes = 0;
    for (const char byte : c.bytes) bytes = (bytes << 8) | static_cast<unsigned char>(byte);
    return fmt::format("CHAR({} USING utf8mb4)", bytes);
  });
  return fmt::format("CONCAT({})", fmt::join(pieces, ", "));
}

// With an exponent a number is approximate (a double), without one it is a decimal.
std::string FormatApproximate(double value) {
  const std::string text = FormatNumber(value);
  return text.find('e') == std::string::npos ? text + "e0" : text;
}

std::string FormatPostgresql(double value) {
  return fmt::format("float8 '{}'", FormatNumber(value));
}

// As a whole number times or by powers of two, all of them exact doubles.
std::string FormatAsProduct(double value) {
  constexpr int kDigits = std::numeric_limits<double>::digits;
  constexpr int kStep = 52;
  int exponent = 0;
  const double mantissa = std::ldexp(std::frexp(value, &exponent), kDigits);
  exponent -= kDigits;
  std::string product = fmt::format("({}.0", static_cast<std::int64_t>(mantissa));
  const char operation = exponent < 0 ? '/' : '*';
  for (int powers = std::abs(exponent); powers > 0; powers -= kStep) {
    const std::int64_t factor = std::int64_t{1} << std::min(powers, kStep);
    product += fmt::format(" {} {}.0", operation, factor);
  }
  return product + ")";
}

// A decimal with few digits, which SQLite parses right: with at most four decimals a number is
// further from the middle between two doubles than the parser's first rounding reaches.
bool IsShortDecimal(const std::string& text) {
  constexpr std::size_t kDigits = 15;
  constexpr std::size_t kDecimals = 4;
  const std::size_t point = text.find('.');
  return point != std::string::npos && text.find('e') == std::string::npos &&
         text.size() <= kDigits + 1 && text.size() - point - 1 <= kDecimals;
}

// SQLite's parser rounds twice, and is one unit in the last place off for some texts that are
// close to the middle between two doubles. 17 digits are close enough to the double itself; but
// near the smallest numbers the parser loses more.
std::string FormatSqlite(double value) {
  constexpr double kParsedWell = 1e-290;
  if (value != 0.0 && std::abs(value) < kParsedWell) return FormatAsProduct(value);
  std::string text = FormatNumber(value);
  if (text.find_first_of(".e") == std::string::npos) text += ".0";
  return IsShortDecimal(text) ? text : fmt::format("{:#.17g}", value);
}

constexpr const char* kIsNull = "{} IS NULL";
constexpr const char* kTime = "TIMESTAMP '{}'";

constexpr std::array<SqlDialect, 6> kDialects = {{
    {"ansi", '"', true, QuoteAnsi, FormatApproximate, nullptr, nullptr, kIsNull, "{0} <> {0}", "{}",
     "{}", kTime},
    // A text or a blob is above all numbers, and CAST makes 0 of what is no number. Only the text
    // of a number equals what CAST makes of it: the comparison turns such a text into its number.
    // Whole numbers beyond 2^53 become doubles first.
    {"sqlite", '"', false, QuoteSqlite, FormatSqlite, "9e999", "-9e999",
     "{0} IS NULL OR CAST({0} AS NUMERIC) <> {0}", "", "CAST({} AS REAL)",
     "CAST({} AS TEXT) COLLATE BINARY", nullptr},
    {"postgresql", '"', true, QuotePostgresql, FormatPostgresql, "float8 'Infinity'",
     "float8 '-Infinity'", kIsNull, "{} = float8 'NaN'", "{}", "CAST({} AS text) COLLATE \"C\"",
     kTime},
    // A text that is no number would be 0. Its usual collations ignore letter case and blanks at
    // the end.
    {"mysql", '`', false, QuoteMysql, FormatApproximate, nullptr, nullptr,
     "{0} IS NULL OR {0} NOT REGEXP "
     "'^ *[-+]?([0-9]+[.]?[0-9]*|[.][0-9]+)([eE][-+]?[0-9]+)? *$'",
     "", "({} + 0e0)", "CAST(CONVERT({} USING utf8mb4) AS BINARY)", kTime},
    {"duckdb", '"', false, QuoteDuckdb, FormatApproximate, "CAST('inf' AS DOUBLE)",
     "CAST('-inf' AS DOUBLE)", kIsNull, "{} = CAST('nan' AS DOUBLE)", "{}", "CAST({} AS VARCHAR)",
     kTime},
    // A text that is no number becomes NULL, or with spark.sql.ansi.enabled ends the query.
    {"spark", '`', false, QuoteWithBackslashes, FormatApproximate, "double('Infinity')",
     "double('-Infinity')", "CAST({} AS DOUBLE) IS NULL", "isnan(CAST({} AS DOUBLE))",
     "CAST({} AS DOUBLE)", "CAST({} AS STRING)", kTime},
}};

void CheckText(const char* what, std::string_view text) {
  if (text.find('\0') != std::string_view::npos) {
    throw Refusal(fmt::format("the {} {} has a NUL character, which SQL cannot hold", what,
                              QuotedText(text)));
  }
  if (!IsUtf8(text)) throw Refusal(fmt::format("the {} {} is not UTF-8", what, QuotedText(text)));
}

}  // namespace

std::vector<std::string> SqlDialectNames() {
  std::vector<std::string> names;
  names.reserve(kDialects.size());
  for (const SqlDialect& dialect : kDialects) names.emplace_back(dialect.name);
  return names;
}

const SqlDialect& FindSqlDialect(const std::string& name) {
  const auto found = std::find_if(kDialects.begin(), kDialects.end(),
                                  [&](const SqlDialect& dialect) { return dialect.name == name; });
  if (found == kDialects.end()) {
    throw Refusal(fmt::format("there is no SQL dialect {}; there are {}", QuotedText(name),
                              fmt::join(SqlDialectNames(), ", ")));
  }
  return *found;
}

std::vector<std::string> SplitTableName(const std::string& table) {
  std::vector<std::string> parts(1);
  bool quoted = false;
  for (std::size_t i = 0; i < table.size(); ++i) {
    if (table[i] == '"' && quoted && i + 1 < table.size() && table[i + 1] == '"') {
      parts.back() += table[i++];
    } else if (table[i] == '"') {
      quoted = !quoted;
    } else if (table[i] == '.' && !quoted) {
      parts.emplace_back();
    } else {
      parts.back() += table[i];
    }
  }
  for (const std::string& part : parts) {
    if (!quoted && !part.empty()) continue;
    throw Refusal(RefusalCode::kTableName, {{}, table, {}},
                  fmt::format("{} is no name of a table", QuotedText(table)));
  }
  return parts;
}

std::string QuoteIdentifier(const SqlDialect& dialect, std::string_view name) {
  CheckText("name", name);
  if (IsSafe(name)) return QuoteDoubled(name, dialect.identifierQuote);
  if (dialect.hasUnicodeNames) return QuoteUnicode(name, dialect.identifierQuote);
  throw Refusal(
      fmt::format("the name {} has a control character, which the SQL dialect {} cannot "
                  "write; rename the column",
                  QuotedText(name), dialect.name));
}

std::string FormatSqlText(const SqlDialect& dialect, std::string_view text) {
  CheckText("text", text);
  return dialect.quoteText(text);
}

std::string FormatSqlTime(const SqlDialect& dialect, const VariableInfo& attribute, double seconds,
                          bool up) {
  if (dialect.time == nullptr) {
    throw Refusal(
        fmt::format("the column {} holds dates, for which the SQL dialect {} has no type; take "
                    "another dialect, or mcbin apply",
                    QuotedText(attribute.name), dialect.name));
  }
  return fmt::format(fmt::runtime(dialect.time), FormatExportTime(attribute, seconds, up));
}

std::string FormatSqlNumber(const SqlDialect& dialect, double value) {
  if (!std::isinf(value)) return dialect.formatNumber(value);
  if (dialect.infinity == nullptr) {
    throw Refusal(RefusalCode::kNoInfinity, {{}, dialect.name, {}},
                  fmt::format("a weight of evidence is infinite, which the SQL dialect {} cannot "
                              "say; merge the bin with an empty class",
                              dialect.name));
  }
  return value > 0.0 ? dialect.infinity : dialect.minusInfinity;
}

}  // namespace MCBinModel
