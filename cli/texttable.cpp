#include "cli/texttable.h"

#include <algorithm>
#include <utility>

#include "cli/displaytext.h"

namespace MCBin {

void TextTable::AddColumn(std::string header, Align align) {
  fRows.front().push_back(std::move(header));
  fAligns.push_back(align);
}

void TextTable::AddRow(std::vector<std::string> cells) { fRows.push_back(std::move(cells)); }

std::string TextTable::Render() const {
  std::vector<std::size_t> widths(fAligns.size());
  for (const auto& row : fRows) {
    for (std::size_t i = 0; i < row.size(); ++i) {
      widths[i] = std::max(widths[i], DisplayWidth(row[i]));
    }
  }
  std::string text;
  for (const auto& row : fRows) {
    std::string line;
    for (std::size_t i = 0; i < row.size(); ++i) {
      const std::string padding(widths[i] - DisplayWidth(row[i]), ' ');
      line += "  ";
      line += fAligns[i] == Align::kLeft ? row[i] + padding : padding + row[i];
    }
    line.erase(line.find_last_not_of(' ') + 1);
    text += line + "\n";
  }
  return text;
}

}  // namespace MCBin
