#include "binmodel/text/htmltext.h"

#include "binmodel/text/displaytext.h"

namespace MCBinModel {

std::string HtmlText(std::string_view text) {
  std::string escaped;
  for (const char c : PrintableText(text)) {
    switch (c) {
      case '&':
        escaped += "&amp;";
        break;
      case '<':
        escaped += "&lt;";
        break;
      case '>':
        escaped += "&gt;";
        break;
      case '"':
        escaped += "&quot;";
        break;
      case '\'':
        escaped += "&#39;";
        break;
      default:
        escaped += c;
    }
  }
  return escaped;
}

}  // namespace MCBinModel
