#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "binmodel/model/variableinfo.h"

namespace MCBinModel {

// How one database writes what an exported query needs.
//
// A number is written such that comparing with it means comparing doubles, and that the
// database's own parser gets exactly this double.
struct SqlDialect {
  const char* name;
  char identifierQuote;
  bool hasUnicodeNames;                             // U&"..."
  std::string (*quoteText)(std::string_view text);  // in UTF-8, without a NUL
  std::string (*formatNumber)(double value);        // of a finite value
  const char* infinity;                             // +infinity; null when there is none
  const char* minusInfinity;

  // Patterns with {} for a column.
  const char* isNoNumber;     // the column of a numeric attribute holds nothing
  const char* isNaN;          // empty when there is no NaN
  const char* numberOperand;  // what is compared with numbers
  const char* textOperand;    // what is compared with texts, byte by byte

  const char* time;  // pattern with {} for a text such as 2024-01-31 12:30:00; null: has no times
};

// Throws Refusal for a name that SqlDialectNames() does not have.
const SqlDialect& FindSqlDialect(const std::string& name);

// The parts of a table's name (schema.table), of which any may be in double quotes. Throws Refusal
// for a text that is no name.
std::vector<std::string> SplitTableName(const std::string& table);

// A table or column name in the dialect's quotes. Throws Refusal for one that is not UTF-8, has a
// NUL, which no query can hold, or another control character in a dialect that has no escape for
// it; line feeds and tabs stand as they are.
std::string QuoteIdentifier(const SqlDialect& dialect, std::string_view name);

// A text as a literal, control characters as escapes. Throws Refusal for one with a NUL or not in
// UTF-8.
std::string FormatSqlText(const SqlDialect& dialect, std::string_view text);

// A time as a literal, see FormatExportTime(). Throws Refusal in a dialect that has no times, too.
std::string FormatSqlTime(const SqlDialect& dialect, const VariableInfo& attribute, double seconds,
                          bool up);

// A number as a literal. Throws Refusal for an infinite one in a dialect that has none.
std::string FormatSqlNumber(const SqlDialect& dialect, double value);

}  // namespace MCBinModel
