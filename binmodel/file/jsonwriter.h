#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace MCBinModel {

// Writes a JSON text from front to end.
//
// Objects and arrays of objects take a line per entry; arrays of numbers or texts stay on
// one line. Numbers are the shortest that read back as the same double. Requires finite
// numbers and UTF-8 texts, and calls that make well-formed JSON.
class JsonWriter {
 public:
  void BeginObject();
  void EndObject();
  void BeginArray();
  void EndArray();
  void Key(std::string_view key);

  void Value(std::string_view text);
  void Value(const char* text) { Value(std::string_view(text)); }
  void Value(double number);
  void Value(std::uint64_t number);
  void Value(long number);
  void Value(int number) { Value(static_cast<long>(number)); }
  void Value(bool truth);
  void Value(const std::vector<double>& numbers);
  void Value(const std::vector<std::string>& texts);

  template <typename T>
  void Member(std::string_view key, const T& value) {
    Key(key);
    Value(value);
  }

  const std::string& GetText() const { return fText; }

 private:
  void Open(char bracket);
  void Close(char bracket);
  void Separate();
  void NewLine();
  void AppendText(std::string_view text);
  template <typename T>
  void AppendList(const std::vector<T>& values);

  std::string fText;
  std::size_t fDepth = 0;
  bool fFirst = true;  // nothing stands in the innermost brackets yet
  bool fAfterKey = false;
};

}  // namespace MCBinModel
