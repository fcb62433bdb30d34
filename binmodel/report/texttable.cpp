#include "binmodel/report/texttable.h"

#include <algorithm>
#include <string_view>
#include <utility>

#include "binmodel/text/displaytext.h"

namespace MCBinModel {

namespace {

// Columns of a cell; its colours take none.
std::size_t CellWidth(std::string_view cell) {
  std::size_t width = 0;
  for (;;) {
    const std::size_t color = cell.find("\x1b[");
    width += DisplayWidth(cell.substr(0, color));
    if (color == std::string_view::npos) return width;
    cell.remove_prefix(std::min(cell.find('m', color), cell.size() - 1) + 1);
  }
}

}  // namespace

void TextTable::AddColumn(std::string header, Align align) {
  fRows.front().push_back(std::move(header));
  fAligns.push_back(align);
}

void TextTable::AddRow(std::vector<std::string> cells) { fRows.push_back(std::move(cells)); }

std::string TextTable::Render() const {
  std::vector<std::size_t> widths(fAligns.size());
  for (const auto& row : fRows) {
    for (std::size_t i = 0; i < row.size(); ++i) {
      widths[i] = std::max(widths[i], CellWidth(row[i]));
    }
  }
  std::string text;
  for (const auto& row : fRows) {
    std::string line;
    for (std::size_t i = 0; i < row.size(); ++i) {
      const std::string padding(widths[i] - CellWidth(row[i]), ' ');
      line += "  ";
      line += fAligns[i] == Align::kLeft ? row[i] + padding : padding + row[i];
    }
    line.erase(line.find_last_not_of(' ') + 1);
    text += line + "\n";
  }
  return text;
}

}  // namespace MCBinModel
