#pragma once

#include <cstdint>
#include <nlohmann/json.hpp>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace MCBinModel {

// Parses a JSON text from a file that may hold anything. `name` is the file's, for messages.
//
// Throws Refusal with the line for what is no JSON (a file that was cut off, text that is
// not UTF-8, a number beyond the largest double), and with the place for a member that
// appears twice and for values nested more than 32 deep.
nlohmann::json ParseJson(std::string_view text, const std::string& name);

// A value in a JSON tree that knows its place, so that whatever is wrong with it can be told
// as "file: /results/0/cut_points/3: why".
//
// Every Get... throws Refusal when the value is not of that type. Borrows the tree.
class JsonNode {
 public:
  JsonNode(const nlohmann::json& root, std::string fileName);

  // A member of an object; GetMember refuses an object that lacks it.
  JsonNode GetMember(const char* key) const;
  std::optional<JsonNode> FindMember(const char* key) const;

  std::vector<JsonNode> GetElements() const;
  JsonNode GetElement(std::size_t index) const;

  std::string GetText() const;
  double GetNumber() const;
  std::vector<std::string> GetTexts() const;
  std::vector<double> GetNumbers() const;

  // A number from 0 up; a list of them.
  double GetWeight() const;
  std::vector<double> GetWeights() const;

  // A whole number without fraction or exponent.
  std::uint64_t GetCount() const;
  int GetInteger(int least, int most) const;

  // The index of the text in `choices`.
  std::size_t GetChoice(const std::vector<const char*>& choices) const;

  // The file and the JSON pointer, for a refusal.
  std::string GetPlace() const;
  [[noreturn]] void Refuse(const std::string& reason) const;

 private:
  JsonNode(const nlohmann::json& value, const std::string& fileName, std::string pointer);

  [[noreturn]] void RefuseType(const char* expected) const;
  const nlohmann::json& GetArray() const;

  const nlohmann::json* fValue;
  std::string fFileName;
  std::string fPointer;
};

}  // namespace MCBinModel
