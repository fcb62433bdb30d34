#pragma once

#include <string>
#include <string_view>

namespace MCBinModel {

// A text from the data as content or attribute value of an HTML, SVG or XML document: control
// characters and what is not UTF-8 become readable escapes, markup loses its meaning.
std::string HtmlText(std::string_view text);

}  // namespace MCBinModel
