#include "csv/columnnames.h"

#include <fmt/format.h>
#include <fmt/ranges.h>

#include <algorithm>
#include <numeric>

#include "binmodel/model/refusal.h"
#include "binmodel/text/displaytext.h"
#include "binmodel/text/similartexts.h"
#include "binmodel/text/utf8.h"

namespace MCBin {

using MCBinModel::RefusalCode;

namespace {

bool IsBinary(char c) {
  const bool ordinary = static_cast<unsigned char>(c) >= 0x20;
  return !ordinary && c != '\t' && c != '\n' && c != '\r';
}

// Goes back to the last * where the rest does not match.
bool MatchesPattern(std::string_view text, std::string_view pattern) {
  std::size_t at = 0;
  std::size_t wanted = 0;
  std::size_t star = std::string_view::npos;
  std::size_t starEnd = 0;  // of what the last * stands for
  while (at < text.size()) {
    if (wanted < pattern.size() && pattern[wanted] == '*') {
      star = wanted++;
      starEnd = at;
    } else if (wanted < pattern.size() && (pattern[wanted] == '?' || pattern[wanted] == text[at])) {
      ++at;
      ++wanted;
    } else if (star != std::string_view::npos) {
      wanted = star + 1;
      at = ++starEnd;
    } else {
      return false;
    }
  }
  return pattern.find_first_not_of('*', wanted) == std::string_view::npos;
}

[[noreturn]] void Refuse(const std::string& place, const std::string& subject,
                         const std::string& reason) {
  throw MCBinModel::Refusal(RefusalCode::kInput, {place, subject, {}}, reason);
}

}  // namespace

ColumnNames::ColumnNames(const CsvReader& header) : fFileName(header.GetName()) {
  for (const CsvField& field : header.GetFields()) {
    if (std::any_of(field.text.begin(), field.text.end(), IsBinary)) {
      Refuse(header.Where(), {},
             "control characters in the header; this is a binary file, not CSV text");
    }
    if (!MCBinModel::IsUtf8(field.text)) {
      Refuse(header.Where(), std::string(field.text),
             fmt::format("the name of column {} is not UTF-8 text: {}; convert the file first, for "
                         "example: iconv -f LATIN1 -t UTF-8",
                         fNames.size() + 1, MCBinModel::QuotedText(field.text)));
    }
    fNames.emplace_back(field.text);
  }
  CheckDuplicates(header.Where());
}

ColumnNames ColumnNames::Read(CsvReader& reader) {
  if (!reader.Next()) {
    Refuse(reader.GetName(), {}, "the file is empty; there is no header row");
  }
  return ColumnNames(reader);
}

bool ColumnNames::Contains(const std::string& name) const {
  return std::find(fNames.begin(), fNames.end(), name) != fNames.end();
}

void ColumnNames::CheckDuplicates(const std::string& where) const {
  std::vector<std::size_t> byName(fNames.size());
  std::iota(byName.begin(), byName.end(), std::size_t{0});
  std::stable_sort(byName.begin(), byName.end(),
                   [this](std::size_t a, std::size_t b) { return fNames[a] < fNames[b]; });
  for (std::size_t i = 1; i < byName.size(); ++i) {
    const std::string& name = fNames[byName[i]];
    if (name.empty() || name != fNames[byName[i - 1]]) continue;
    Refuse(where, name,
           fmt::format("columns {} and {} have the same name {}; rename one", byName[i - 1] + 1,
                       byName[i] + 1, MCBinModel::QuotedText(name)));
  }
}

std::size_t ColumnNames::Find(const std::string& name) const {
  const auto found = std::find(fNames.begin(), fNames.end(), name);
  if (!name.empty() && found != fNames.end()) {
    return static_cast<std::size_t>(found - fNames.begin());
  }
  RefuseUnknown(name);
}

bool ColumnNames::IsPattern(const std::string& name) const {
  return name.find_first_of("*?") != std::string::npos && !Contains(name);
}

std::vector<std::size_t> ColumnNames::FindAll(const std::string& nameOrPattern) const {
  if (!IsPattern(nameOrPattern)) return {Find(nameOrPattern)};
  std::vector<std::size_t> positions;
  for (std::size_t position = 0; position < fNames.size(); ++position) {
    const std::string& name = fNames[position];
    if (!name.empty() && MatchesPattern(name, nameOrPattern)) positions.push_back(position);
  }
  if (positions.empty()) {
    throw MCBinModel::Refusal(
        RefusalCode::kUnknownColumn, {fFileName, nameOrPattern, {}},
        fmt::format("no column matches {}", MCBinModel::QuotedText(nameOrPattern)));
  }
  return positions;
}

void ColumnNames::RefuseUnknown(const std::string& name) const {
  const std::string unknown = fmt::format("there is no column {}; ", MCBinModel::QuotedText(name));
  if (fNames.size() == 1) {
    for (const char delimiter : {';', '\t', '|', ','}) {
      if (fNames[0].find(delimiter) == std::string::npos) continue;
      throw MCBinModel::Refusal(
          RefusalCode::kOtherDelimiter, {fFileName, name, std::string(1, delimiter)},
          unknown + "the header is one column, " + MCBinModel::QuotedText(fNames[0]));
    }
  }
  throw MCBinModel::Refusal(RefusalCode::kUnknownColumn, {fFileName, name, {}},
                            unknown + Suggest(name));
}

std::string ColumnNames::Suggest(const std::string& name) const {
  constexpr std::size_t kMostNames = 12;
  std::vector<std::string> listed = MCBinModel::FindSimilar(fNames, name);
  const bool areSimilar = !listed.empty();
  if (!areSimilar && fNames.size() <= kMostNames) listed = fNames;
  for (std::string& column : listed) column = MCBinModel::QuotedText(column);
  if (areSimilar) return fmt::format("did you mean {}?", fmt::join(listed, ", "));
  if (!listed.empty()) return fmt::format("the columns are {}", fmt::join(listed, ", "));
  return fmt::format("the file has {} columns, the first is {}", fNames.size(),
                     MCBinModel::QuotedText(fNames[0]));
}

}  // namespace MCBin
