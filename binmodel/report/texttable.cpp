#include "binmodel/report/texttable.h"

#include <fmt/format.h>

#include <algorithm>
#include <array>
#include <cmath>
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

std::string TextTable::RenderMarkdown() const {
  std::string text;
  for (std::size_t row = 0; row < fRows.size(); ++row) {
    for (const std::string& cell : fRows[row]) text += "| " + MarkdownText(cell) + " ";
    text += "|\n";
    if (row > 0) continue;
    for (const Align align : fAligns) text += align == Align::kLeft ? "| --- " : "| ---: ";
    text += "|\n";
  }
  return text;
}

std::string MarkdownText(std::string_view text) {
  constexpr std::string_view kMarkup = "\\`*_[]<>|&~$#";
  std::string escaped;
  for (const char c : text) {
    if (kMarkup.find(c) != std::string_view::npos) escaped += '\\';
    escaped += c;
  }
  return escaped;
}

std::string ShareBar(double share, std::size_t width, std::size_t index, const TextStyle& style) {
  constexpr std::array<const char*, 8> kParts = {"", "▏", "▎", "▍", "▌", "▋", "▊", "▉"};
  constexpr std::array<int, 6> kColors = {34, 33, 32, 35, 36, 31};
  const double wanted = std::round(share * static_cast<double>(8 * width));
  const auto eighths = std::min(8 * width, static_cast<std::size_t>(std::max(wanted, 0.0)));
  const std::size_t shown = share > 0.0 ? std::max<std::size_t>(eighths, 1) : 0;

  std::string bar;
  for (std::size_t column = 0; column < shown / 8; ++column) bar += "█";
  bar += kParts[shown % 8];
  const std::string blanks(width - (shown + 7) / 8, ' ');
  if (style.color && !bar.empty()) {
    bar = fmt::format("\x1b[{}m{}\x1b[0m", kColors[index % kColors.size()], bar);
  }
  return bar + blanks;
}

}  // namespace MCBinModel
