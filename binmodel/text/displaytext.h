#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace MCBinModel {

// Texts from the data (names, labels, fields) made fit to be shown.

// What a reader would not see, or what could move a cursor, break a table or turn a text around,
// becomes a readable escape: control characters and bytes that are not UTF-8 as \n, \t or \xHH,
// directions and characters without width as \uHHHH.
std::string PrintableText(std::string_view text);

// PrintableText cut to `width` columns, with an ellipsis in place of what is cut. What is read as
// one character, such as a letter with its accents, is not cut apart.
std::string ElideText(std::string_view text, std::size_t width);

// The same with the ellipsis in the middle, so that the end stays. Reads all of `text`.
std::string ElideMiddle(std::string_view text, std::size_t width);

// 'text' for messages: printable, at most 60 columns, in single quotes.
std::string QuotedText(std::string_view text);

// Columns that a printable UTF-8 text takes on a terminal: none for combining marks, two for wide
// characters.
std::size_t DisplayWidth(std::string_view text);

}  // namespace MCBinModel
