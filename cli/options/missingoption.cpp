#include "cli/options/missingoption.h"

#include <fmt/format.h>

#include <cfloat>
#include <optional>
#include <string>
#include <utility>

#include "binmodel/text/displaytext.h"
#include "binmodel/text/isotime.h"
#include "binmodel/text/number.h"
#include "cli/options/optionlist.h"
#include "cli/terminal/usageerror.h"

namespace MCBin {

namespace {

using Interval = MCBinModel::MissingDefinition::Interval;

// One end of an interval; `open` where it is left out, nothing when it is no number or day.
std::optional<double> ParseEnd(std::string_view text, double open) {
  if (MCBinModel::TrimBlanks(text).empty()) return open;
  if (const auto time = MCBinModel::ParseTime(text)) return time;
  const MCBinModel::ParsedNumber number = MCBinModel::ParseNumber(text);
  if (number.kind != MCBinModel::NumberKind::kNumber) return std::nullopt;
  return number.value;
}

std::optional<Interval> ParseInterval(std::string_view text) {
  const std::size_t colon = text.find(':');
  if (colon == std::string_view::npos || MCBinModel::TrimBlanks(text).size() == 1) {
    return std::nullopt;
  }
  const auto low = ParseEnd(text.substr(0, colon), -DBL_MAX);
  const auto high = ParseEnd(text.substr(colon + 1), DBL_MAX);
  if (!low || !high) return std::nullopt;
  return Interval{*low, *high};
}

}  // namespace

MissingRequest ParseMissingOption(std::string_view text) {
  MissingRequest request;
  request.column = TakeOptionName(text, "--missing", "NAME=v1,v2,low:high");
  const std::string name = MCBinModel::QuotedText(request.column);
  if (text.empty()) throw UsageError(fmt::format("--missing {}: no value after '='", name));
  for (OptionItem& item : SplitOptionList(text)) {
    const auto interval = item.quoted ? std::nullopt : ParseInterval(item.text);
    if (!interval) {
      request.values.push_back(std::move(item.text));
      continue;
    }
    if (request.interval) {
      throw UsageError(fmt::format("--missing {}: only one interval can be given", name));
    }
    if (interval->low > interval->high) {
      throw UsageError(fmt::format("--missing {}: the interval {} is empty; write low:high", name,
                                   MCBinModel::QuotedText(item.text)));
    }
    request.interval = interval;
  }
  return request;
}

}  // namespace MCBin
