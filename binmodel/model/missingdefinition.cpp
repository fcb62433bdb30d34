#include "binmodel/model/missingdefinition.h"

#include <fmt/format.h>

#include <cfloat>

#include "binmodel/text/displaytext.h"
#include "binmodel/text/number.h"
#include "cli/options/optionlist.h"
#include "cli/options/usageerror.h"

namespace MCBinModel {

namespace {

// One end of an interval; `open` where it is left out, nothing when it is not a number.
std::optional<double> ParseEnd(std::string_view text, double open) {
  if (TrimBlanks(text).empty()) return open;
  const ParsedNumber number = ParseNumber(text);
  if (number.kind != NumberKind::kNumber) return std::nullopt;
  return number.value;
}

std::optional<MissingDefinition::Interval> ParseInterval(std::string_view text) {
  const std::size_t colon = text.find(':');
  if (colon == std::string_view::npos || TrimBlanks(text).size() == 1) return std::nullopt;
  const auto low = ParseEnd(text.substr(0, colon), -DBL_MAX);
  const auto high = ParseEnd(text.substr(colon + 1), DBL_MAX);
  if (!low || !high) return std::nullopt;
  return MissingDefinition::Interval{*low, *high};
}

// The name before '=', which may be written in quotes; takes both off `text`.
std::string TakeColumn(std::string_view& text) {
  const std::string_view whole = text;
  const bool quoted = !text.empty() && text.front() == '"';
  const std::size_t nameEnd = quoted ? text.rfind("\"=") : text.find('=');
  if (nameEnd == std::string_view::npos || nameEnd == 0) {
    throw MCBin::UsageError(
        fmt::format("--missing {}: write NAME=v1,v2,low:high", QuotedText(whole)));
  }
  const std::string_view name = quoted ? text.substr(0, nameEnd + 1) : text.substr(0, nameEnd);
  text.remove_prefix(name.size() + 1);
  return quoted ? MCBin::SplitOptionNames(name).front() : std::string(name);
}

}  // namespace

std::vector<double> MissingDefinition::NumericValues() const {
  std::vector<double> numbers;
  for (const std::string& value : values) {
    const ParsedNumber number = ParseNumber(value);
    if (number.kind != NumberKind::kNumber) {
      throw MCBin::UsageError(
          fmt::format("--missing {}: {} is not a number, but the column is numeric; "
                      "texts that stand for a missing value go to --na",
                      QuotedText(column), QuotedText(value)));
    }
    numbers.push_back(number.value);
  }
  return numbers;
}

MissingDefinition ParseMissingDefinition(std::string_view text) {
  MissingDefinition definition;
  definition.column = TakeColumn(text);
  const std::string name = QuotedText(definition.column);
  if (text.empty()) throw MCBin::UsageError(fmt::format("--missing {}: no value after '='", name));
  for (MCBin::OptionItem& item : MCBin::SplitOptionList(text)) {
    const auto interval = item.quoted ? std::nullopt : ParseInterval(item.text);
    if (!interval) {
      definition.values.push_back(std::move(item.text));
      continue;
    }
    if (definition.interval) {
      throw MCBin::UsageError(fmt::format("--missing {}: only one interval can be given", name));
    }
    if (interval->low > interval->high) {
      throw MCBin::UsageError(fmt::format("--missing {}: the interval {} is empty; write low:high",
                                          name, QuotedText(item.text)));
    }
    definition.interval = interval;
  }
  return definition;
}

}  // namespace MCBinModel
