#include "binmodel/file/jsonprinter.h"

#include <fmt/format.h>

#include <algorithm>
#include <cmath>
#include <string_view>
#include <utility>

#include "binmodel/model/refusal.h"
#include "binmodel/text/displaytext.h"
#include "binmodel/text/number.h"
#include "binmodel/text/utf8.h"

namespace MCBinModel {

namespace {

using nlohmann::ordered_json;

class Printer {
 public:
  std::string Print(const ordered_json& root) {
    Append(root);
    fText += '\n';
    return std::move(fText);
  }

 private:
  void Append(const ordered_json& value) {
    if (value.is_object()) {
      AppendLines('{', value, [&](const auto& entry) {
        AppendText(entry.key());
        fText += ": ";
      });
    } else if (value.is_array()) {
      const bool ofScalars = std::all_of(value.begin(), value.end(),
                                         [](const auto& entry) { return entry.is_primitive(); });
      if (ofScalars) {
        AppendOneLine(value);
      } else {
        AppendLines('[', value, [](const auto&) {});
      }
    } else if (value.is_string()) {
      AppendText(value.get_ref<const std::string&>());
    } else if (value.is_number_float()) {
      AppendNumber(value.get<double>());
    } else {
      fText += value.dump();
    }
  }

  template <typename AppendName>
  void AppendLines(char bracket, const ordered_json& container, AppendName appendName) {
    const std::size_t placeLength = fPlace.size();
    fText += bracket;
    ++fDepth;
    const char* separator = "";
    for (const auto& entry : container.items()) {
      fPlace += "/" + entry.key();
      fText += separator;
      NewLine();
      appendName(entry);
      Append(entry.value());
      separator = ",";
      fPlace.resize(placeLength);
    }
    --fDepth;
    if (!container.empty()) NewLine();
    fText += bracket == '{' ? '}' : ']';
  }

  void AppendOneLine(const ordered_json& array) {
    fText += '[';
    const char* separator = "";
    for (const ordered_json& value : array) {
      fText += separator;
      Append(value);
      separator = ", ";
    }
    fText += ']';
  }

  void NewLine() {
    fText += '\n';
    fText.append(2 * fDepth, ' ');
  }

  void AppendText(std::string_view text) {
    if (!IsUtf8(text)) Refuse(QuotedText(text) + " is not UTF-8 text");
    fText += '"';
    for (const char c : text) {
      if (c == '"' || c == '\\') {
        fText += '\\';
        fText += c;
      } else if (static_cast<unsigned char>(c) < 0x20) {
        fText += fmt::format("\\u{:04x}", static_cast<unsigned>(c));
      } else {
        fText += c;
      }
    }
    fText += '"';
  }

  // A negative zero keeps its sign, and gets a point: readers take "-0" for the integer 0.
  void AppendNumber(double number) {
    if (!std::isfinite(number)) Refuse("JSON has no number that is infinite or NaN");
    fText += number == 0.0 && std::signbit(number) ? "-0.0" : FormatNumber(number);
  }

  [[noreturn]] void Refuse(const std::string& reason) const {
    throw Refusal(RefusalCode::kUnwritable, {fPlace, "", ""}, reason);
  }

  std::string fText;
  std::string fPlace;  // of the value that comes next, as a JSON pointer
  std::size_t fDepth = 0;
};

}  // namespace

std::string PrintJson(const ordered_json& root) { return Printer().Print(root); }

}  // namespace MCBinModel
