#include "binmodel/report/datanames.h"

#include <algorithm>
#include <set>
#include <string_view>

#include "binmodel/text/displaytext.h"
#include "binmodel/text/utf8.h"

namespace MCBinModel {

namespace {

using Names = std::vector<std::string>;

std::size_t CountDifferent(const Names& names) {
  return std::set<std::string>(names.begin(), names.end()).size();
}

template <typename Change>
Names Changed(const Names& names, Change change) {
  Names changed;
  for (const std::string& name : names) changed.push_back(change(name));
  return changed;
}

bool IsPartOfWord(char c) {
  return (c >= '0' && c <= '9') || (c >= 'A' && c <= 'Z') || (c >= 'a' && c <= 'z');
}

// How many bytes of whole code points, and up to the beginning of a word, all names begin with.
std::size_t CommonWords(const Names& names) {
  const std::string_view first = names.front();
  std::string_view left = first;
  std::size_t common = 0;
  while (!left.empty()) {
    TakeCodePoint(left);
    const std::size_t longer = first.size() - left.size();
    const bool isShared = std::all_of(names.begin(), names.end(), [&](std::string_view name) {
      return name.substr(0, longer) == first.substr(0, longer);
    });
    if (!isShared) break;
    common = longer;
  }
  while (common > 0 && IsPartOfWord(first[common - 1])) --common;
  return common;
}

}  // namespace

std::vector<std::string> ShortDataNames(const std::vector<NamedRecount>& data, std::size_t width) {
  Names whole;
  for (const NamedRecount& named : data) whole.push_back(named.name);
  Names names = Changed(
      whole, [](const std::string& name) { return name.substr(name.find_last_of('/') + 1); });
  if (CountDifferent(names) < names.size()) names = whole;
  const std::size_t different = CountDifferent(names);
  Names shown = Changed(names, [&](const std::string& name) { return ElideMiddle(name, width); });
  if (CountDifferent(shown) == different) return shown;
  const std::size_t common = CommonWords(names);
  return Changed(names, [&](const std::string& name) {
    return "\u2026" + ElideMiddle(std::string_view(name).substr(common), width - 1);
  });
}

}  // namespace MCBinModel
