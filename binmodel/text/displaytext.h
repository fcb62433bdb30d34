#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace MCBinModel {

// Texts from the data (names, labels, fields) made fit for a terminal.

// Control characters and bytes that are not UTF-8 as \n, \t or \xHH, so that data cannot
// move the cursor or break a table.
std::string PrintableText(std::string_view text);

// PrintableText cut to `width` columns, with an ellipsis in place of what is cut.
std::string ElideText(std::string_view text, std::size_t width);

// 'text' for messages: printable, at most 60 columns, in single quotes.
std::string QuotedText(std::string_view text);

// Columns that a printable UTF-8 text takes on a terminal.
std::size_t DisplayWidth(std::string_view text);

// Whether the bytes are well-formed UTF-8.
bool IsUtf8(std::string_view text);

}  // namespace MCBinModel
