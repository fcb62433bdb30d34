#include "binmodel/file/jsonwriter.h"

#include <fmt/format.h>

#include <cmath>

#include "binmodel/text/number.h"

namespace MCBinModel {

namespace {

// As FormatNumber, but a negative zero keeps its sign, and a point: readers take "-0" for the
// integer 0.
std::string NumberText(double number) {
  return number == 0.0 && std::signbit(number) ? "-0.0" : FormatNumber(number);
}

}  // namespace

void JsonWriter::NewLine() {
  fText += '\n';
  fText.append(2 * fDepth, ' ');
}

// Before a key, or before a value that has none.
void JsonWriter::Separate() {
  if (fAfterKey) {
    fAfterKey = false;
    return;
  }
  if (!fFirst) fText += ',';
  if (fDepth > 0) NewLine();
  fFirst = false;
}

void JsonWriter::Open(char bracket) {
  Separate();
  fText += bracket;
  ++fDepth;
  fFirst = true;
}

void JsonWriter::Close(char bracket) {
  --fDepth;
  if (!fFirst) NewLine();
  fText += bracket;
  fFirst = false;
  if (fDepth == 0) fText += '\n';
}

void JsonWriter::BeginObject() { Open('{'); }
void JsonWriter::EndObject() { Close('}'); }
void JsonWriter::BeginArray() { Open('['); }
void JsonWriter::EndArray() { Close(']'); }

void JsonWriter::Key(std::string_view key) {
  Separate();
  AppendText(key);
  fText += ": ";
  fAfterKey = true;
}

void JsonWriter::AppendText(std::string_view text) {
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

void JsonWriter::Value(std::string_view text) {
  Separate();
  AppendText(text);
}

void JsonWriter::Value(double number) {
  Separate();
  fText += NumberText(number);
}

void JsonWriter::Value(std::uint64_t number) {
  Separate();
  fText += std::to_string(number);
}

void JsonWriter::Value(long number) {
  Separate();
  fText += std::to_string(number);
}

void JsonWriter::Value(bool truth) {
  Separate();
  fText += truth ? "true" : "false";
}

template <typename T>
void JsonWriter::AppendList(const std::vector<T>& values) {
  Separate();
  fText += '[';
  const char* separator = "";
  for (const T& value : values) {
    fText += separator;
    if constexpr (std::is_same_v<T, double>) {
      fText += NumberText(value);
    } else {
      AppendText(value);
    }
    separator = ", ";
  }
  fText += ']';
}

void JsonWriter::Value(const std::vector<double>& numbers) { AppendList(numbers); }
void JsonWriter::Value(const std::vector<std::string>& texts) { AppendList(texts); }

}  // namespace MCBinModel
