#include "cli/options/optionlist.h"

#include <fmt/format.h>

#include <utility>

#include "binmodel/text/displaytext.h"
#include "binmodel/text/utf8.h"
#include "cli/terminal/usageerror.h"

namespace MCBin {

namespace {

// Takes a quoted item, which begins at the front of `list`, off the list.
std::string TakeQuoted(std::string_view& list, std::string_view whole) {
  std::string text;
  for (std::size_t i = 1; i < list.size(); ++i) {
    if (list[i] != '"') {
      text += list[i];
    } else if (i + 1 < list.size() && list[i + 1] == '"') {
      text += list[i++];
    } else {
      list.remove_prefix(i + 1);
      return text;
    }
  }
  throw UsageError(
      fmt::format("a quote in the list {} is not closed", MCBinModel::QuotedText(whole)));
}

}  // namespace

std::vector<OptionItem> SplitOptionList(std::string_view list) {
  const std::string_view whole = list;
  if (!MCBinModel::IsUtf8(list)) {
    throw UsageError(fmt::format("the list {} is not UTF-8 text", MCBinModel::QuotedText(list)));
  }
  std::vector<OptionItem> items;
  for (;;) {
    if (!list.empty() && list.front() == '"') {
      items.push_back({TakeQuoted(list, whole), true});
      if (!list.empty() && list.front() != ',') {
        throw UsageError(fmt::format("text after a closing quote in the list {}",
                                     MCBinModel::QuotedText(whole)));
      }
    } else {
      const std::string_view text = list.substr(0, list.find(','));
      items.push_back({std::string(text), false});
      list.remove_prefix(text.size());
    }
    if (list.empty()) return items;
    list.remove_prefix(1);
  }
}

std::string TakeOptionName(std::string_view& text, const char* option, const char* form) {
  const std::string_view whole = text;
  const bool quoted = !text.empty() && text.front() == '"';
  const std::size_t nameEnd = quoted ? text.rfind("\"=") : text.find('=');
  if (nameEnd == std::string_view::npos || nameEnd == 0) {
    throw UsageError(fmt::format("{} {}: write {}, a name with '=' in it in double quotes", option,
                                 MCBinModel::QuotedText(whole), form));
  }
  const std::string_view name = quoted ? text.substr(0, nameEnd + 1) : text.substr(0, nameEnd);
  text.remove_prefix(name.size() + 1);
  return quoted ? SplitOptionNames(name).front() : std::string(name);
}

std::vector<std::string> SplitOptionNames(std::string_view list) {
  std::vector<std::string> names;
  for (OptionItem& item : SplitOptionList(list)) names.push_back(std::move(item.text));
  return names;
}

}  // namespace MCBin
