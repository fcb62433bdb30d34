#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace MCBinModel {

// `text` between quotes, with every quote in it doubled: as in CSV and SQL.
std::string QuoteDoubled(std::string_view text, char quote);

// Adds a text to a line as a field of a CSV file (RFC 4180): in double quotes, with its own quotes
// doubled, when `quoted` says so or when it holds a quote, the delimiter or a line end.
void AppendField(std::string& line, std::string_view text, bool quoted, char delimiter);

// A text as a JSON string with its quotes. What would not be seen is written as \uHHHH; a byte that
// is not UTF-8 becomes the replacement character.
std::string JsonText(std::string_view text);

// A text from the data to be read by people, as content or attribute value of an HTML or SVG
// element: as PrintableText() has it, and without meaning as markup.
std::string HtmlText(std::string_view text);

// A text as content of an XML element or as an attribute in double quotes. A parser gets exactly
// this text: line ends, tabs and what would not be seen are written as references. Nothing for a
// text that XML cannot hold: with another control character, with a code point that is no
// character, or not in UTF-8.
std::optional<std::string> XmlText(std::string_view text);

}  // namespace MCBinModel
