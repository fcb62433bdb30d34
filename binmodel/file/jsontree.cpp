#include "binmodel/file/jsontree.h"

#include <fmt/format.h>

#include <algorithm>
#include <utility>

#include "binmodel/model/refusal.h"
#include "binmodel/text/displaytext.h"

namespace MCBinModel {

namespace {

using nlohmann::json;

constexpr std::size_t kMostLevels = 32;

Refusal BadFile(const std::string& place, const std::string& reason) {
  return {RefusalCode::kBadBinFile, {place, "", ""}, reason};
}

// Builds the tree from the parser's events.
class TreeBuilder : public nlohmann::json_sax<json> {
 public:
  TreeBuilder(std::string_view text, const std::string& name) : fText(text), fName(name) {}

  json TakeRoot() { return std::move(fRoot); }

  bool null() override { return Add(nullptr); }
  bool boolean(bool value) override { return Add(value); }
  bool number_integer(number_integer_t value) override { return Add(value); }
  bool number_unsigned(number_unsigned_t value) override { return Add(value); }
  bool number_float(number_float_t value, const string_t& /*text*/) override { return Add(value); }
  bool string(string_t& value) override { return Add(std::move(value)); }
  bool binary(binary_t& /*value*/) override { return false; }  // never in a text
  bool start_object(std::size_t /*size*/) override { return Open(json::object()); }
  bool start_array(std::size_t /*size*/) override { return Open(json::array()); }
  bool end_object() override { return Close(); }
  bool end_array() override { return Close(); }

  bool key(string_t& key) override {
    if (fOpen.back().node->contains(key)) {
      throw BadFile(fName + ": " + WhereOpen(),
                    fmt::format("the member {} appears twice", QuotedText(key)));
    }
    fOpen.back().key = key;
    return true;
  }

  bool parse_error(std::size_t position, const std::string& /*token*/,
                   const nlohmann::detail::exception& error) override {
    const auto end = fText.begin() + static_cast<std::ptrdiff_t>(std::min(position, fText.size()));
    const auto line = std::count(fText.begin(), end, '\n') + 1;
    const bool endsEarly = position > fText.size();
    throw BadFile(fmt::format("{}:{}", fName, line),
                  endsEarly ? "the file ends too early; it was cut off"
                            : "this is not JSON: " + Reason(error.what()));
  }

 private:
  struct OpenNode {
    json* node;
    std::string key;  // of the member that comes next, in an object
  };

  // The parser's words without its own prefix and position.
  static std::string Reason(std::string_view words) {
    constexpr std::size_t kShownWidth = 100;
    const std::size_t prefixEnd = words.find("] ");
    if (prefixEnd != std::string_view::npos) words.remove_prefix(prefixEnd + 2);
    const std::size_t positionEnd = words.find(": ");
    const bool hasPosition = words.substr(0, 11) == "parse error";
    if (hasPosition && positionEnd != std::string_view::npos) words.remove_prefix(positionEnd + 2);
    return ElideText(words, kShownWidth);
  }

  std::string WhereOpen() const {
    std::string pointer;
    for (std::size_t level = 0; level + 1 < fOpen.size(); ++level) {
      const OpenNode& open = fOpen[level];
      pointer += "/" + (open.node->is_array() ? std::to_string(open.node->size() - 1)
                                              : ElideText(open.key, 40));
    }
    return pointer.empty() ? "/" : pointer;
  }

  template <typename Value>
  bool Add(Value&& value) {
    Place(json(std::forward<Value>(value)));
    return true;
  }

  json* Place(json value) {
    if (fOpen.empty()) {
      fRoot = std::move(value);
      return &fRoot;
    }
    json& parent = *fOpen.back().node;
    if (parent.is_array()) {
      parent.push_back(std::move(value));
      return &parent.back();
    }
    json& member = parent[fOpen.back().key];
    member = std::move(value);
    return &member;
  }

  bool Open(json empty) {
    if (fOpen.size() == kMostLevels) {
      throw BadFile(fName + ": " + WhereOpen(),
                    fmt::format("nested more than {} deep", kMostLevels));
    }
    fOpen.push_back({Place(std::move(empty)), {}});
    return true;
  }

  bool Close() {
    fOpen.pop_back();
    return true;
  }

  const std::string_view fText;
  const std::string& fName;
  json fRoot;
  std::vector<OpenNode> fOpen;  // from the root to the innermost; grows at its end alone
};

}  // namespace

json ParseJson(std::string_view text, const std::string& name) {
  TreeBuilder builder(text, name);
  json::sax_parse(text, &builder);
  return builder.TakeRoot();
}

JsonNode::JsonNode(const json& root, std::string fileName)
    : fValue(&root), fFileName(std::move(fileName)) {}

JsonNode::JsonNode(const json& value, const std::string& fileName, std::string pointer)
    : fValue(&value), fFileName(fileName), fPointer(std::move(pointer)) {}

std::string JsonNode::GetPlace() const {
  return fFileName + ": " + (fPointer.empty() ? "/" : fPointer);
}

void JsonNode::Refuse(const std::string& reason) const { throw BadFile(GetPlace(), reason); }

void JsonNode::RefuseType(const char* expected) const {
  constexpr std::size_t kShownWidth = 40;
  const std::string found = fValue->is_structured() ? fValue->is_array() ? "a list" : "an object"
                            : fValue->is_string()
                                ? QuotedText(fValue->get_ref<const std::string&>())
                                : ElideText(fValue->dump(), kShownWidth);
  Refuse(fmt::format("{} expected, not {}", expected, found));
}

std::optional<JsonNode> JsonNode::FindMember(const char* key) const {
  if (!fValue->is_object()) RefuseType("an object");
  const auto found = fValue->find(key);
  if (found == fValue->end()) return std::nullopt;
  return JsonNode(*found, fFileName, fPointer + "/" + key);
}

JsonNode JsonNode::GetMember(const char* key) const {
  std::optional<JsonNode> member = FindMember(key);
  if (!member) Refuse(fmt::format("the member '{}' is missing", key));
  return *std::move(member);
}

const json& JsonNode::GetArray() const {
  if (!fValue->is_array()) RefuseType("a list");
  return *fValue;
}

JsonNode JsonNode::GetElement(std::size_t index) const {
  return {GetArray().at(index), fFileName, fPointer + "/" + std::to_string(index)};
}

std::vector<JsonNode> JsonNode::GetElements() const {
  std::vector<JsonNode> elements;
  for (std::size_t i = 0; i < GetArray().size(); ++i) elements.push_back(GetElement(i));
  return elements;
}

std::string JsonNode::GetText() const {
  if (!fValue->is_string()) RefuseType("a text");
  return fValue->get<std::string>();
}

double JsonNode::GetNumber() const {
  if (!fValue->is_number()) RefuseType("a number");
  return fValue->get<double>();
}

std::vector<std::string> JsonNode::GetTexts() const {
  std::vector<std::string> texts;
  for (const JsonNode& element : GetElements()) texts.push_back(element.GetText());
  return texts;
}

std::vector<double> JsonNode::GetNumbers() const {
  const json& array = GetArray();
  std::vector<double> numbers;
  numbers.reserve(array.size());
  for (std::size_t i = 0; i < array.size(); ++i) {
    if (!array[i].is_number()) GetElement(i).RefuseType("a number");
    numbers.push_back(array[i].get<double>());
  }
  return numbers;
}

double JsonNode::GetWeight() const {
  if (GetNumber() < 0.0) RefuseType("a number from 0 up");
  return GetNumber();
}

std::vector<double> JsonNode::GetWeights() const {
  std::vector<double> weights = GetNumbers();
  const auto negative =
      std::find_if(weights.begin(), weights.end(), [](double weight) { return weight < 0.0; });
  if (negative != weights.end()) {
    GetElement(static_cast<std::size_t>(negative - weights.begin())).GetWeight();
  }
  return weights;
}

std::uint64_t JsonNode::GetCount() const {
  if (!fValue->is_number_unsigned()) RefuseType("a whole number from 0 up");
  return fValue->get<std::uint64_t>();
}

int JsonNode::GetInteger(int least, int most) const {
  const bool fits = fValue->is_number_integer() &&
                    (!fValue->is_number_unsigned() ||
                     fValue->get<std::uint64_t>() <= static_cast<std::uint64_t>(INT64_MAX)) &&
                    fValue->get<std::int64_t>() >= least && fValue->get<std::int64_t>() <= most;
  if (!fits) RefuseType(fmt::format("a whole number from {} to {}", least, most).c_str());
  return fValue->get<int>();
}

std::size_t JsonNode::GetChoice(const std::vector<const char*>& choices) const {
  const std::string text = GetText();
  const auto found = std::find(choices.begin(), choices.end(), text);
  if (found == choices.end()) {
    RefuseType(fmt::format("'{}'", fmt::join(choices, "' or '")).c_str());
  }
  return static_cast<std::size_t>(found - choices.begin());
}

}  // namespace MCBinModel
