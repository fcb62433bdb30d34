#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

#include "binmodel/report/binreport.h"

namespace MCBinModel {

// A table of aligned columns for a terminal. Cells are UTF-8 and printable, colours
// apart (ESC [ ... m), which take no column.
class TextTable {
 public:
  enum class Align { kLeft, kRight };

  void AddColumn(std::string header, Align align);

  // Requires a cell for each column.
  void AddRow(std::vector<std::string> cells);

  bool HasRows() const { return fRows.size() > 1; }

  // Header and rows, each a line that begins with two blanks.
  std::string Render() const;

  // The same as a table in Markdown. Requires cells without colours.
  std::string RenderMarkdown() const;

 private:
  std::vector<Align> fAligns;
  std::vector<std::vector<std::string>> fRows = {{}};  // the header first
};

// A printable text without meaning as Markdown.
std::string MarkdownText(std::string_view text);

// A share of 1 as a bar with a resolution of an eighth of a column, `width` columns wide with
// its blanks. Shares above 0 are always visible. With colours in that of class `index`.
std::string ShareBar(double share, std::size_t width, std::size_t index, const TextStyle& style);

}  // namespace MCBinModel
