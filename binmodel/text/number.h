#pragma once

#include <string>
#include <string_view>

namespace MCBinModel {

// What a text says when it is read as a number.
enum class NumberKind { kNumber, kNaN, kInfinite, kText };

struct ParsedNumber {
  NumberKind kind;
  double value;  // meaningful for kNumber
};

// Reads a decimal number, whatever the locale: optional sign (a '+' too), digits with or
// without a point, optional exponent; blanks and tabs around it are ignored. The result
// is the nearest double; a number beyond the largest double is kInfinite, one below the
// smallest is 0 or the smallest. "nan" and "inf" are known in any letter case.
ParsedNumber ParseNumber(std::string_view text);

// The text without blanks and tabs at its ends.
std::string_view TrimBlanks(std::string_view text);

// The shortest text that reads back as the same double; whole numbers below 1e15 without
// an exponent.
std::string FormatNumber(double value);

// With a fixed number of decimals.
std::string FormatFixed(double value, int decimals);

// A share of 1 as a percentage with one decimal: 0.333 is "33.3%".
std::string FormatShare(double share);

// The same of a part of a whole; "-" when the whole is nothing.
std::string FormatShareOf(double part, double whole);

}  // namespace MCBinModel
