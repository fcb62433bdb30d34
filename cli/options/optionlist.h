#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace MCBin {

// One item of a list given as an option's value.
struct OptionItem {
  std::string text;
  bool quoted;
};

// Splits "a,b,c" at its commas. An item that holds a comma is written in double quotes,
// as in a CSV file: a,"b, c". Throws UsageError for a quote that is not closed
// and for text that is not UTF-8.
std::vector<OptionItem> SplitOptionList(std::string_view list);

// The name before the '=' of NAME=..., which may be written in quotes; takes both off `text`.
// Throws UsageError, which says that `option` is written in `form`.
std::string TakeOptionName(std::string_view& text, const char* option, const char* form);

// The items' texts.
std::vector<std::string> SplitOptionNames(std::string_view list);

}  // namespace MCBin
