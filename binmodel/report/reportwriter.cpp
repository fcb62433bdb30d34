#include "binmodel/report/reportwriter.h"

#include <fmt/format.h>

namespace MCBinModel {

ReportWriter::ReportWriter(TableFormat format, const TextSink& write)
    : fIsMarkdown(format == TableFormat::kMarkdown), fWrite(write) {}

void ReportWriter::AddTitle(std::string_view title) {
  fWrite(fIsMarkdown ? fmt::format("# {}\n\n", MarkdownText(title)) : fmt::format("{}\n", title));
}

void ReportWriter::AddHeading(std::string_view heading) {
  fWrite(fIsMarkdown ? fmt::format("\n## {}\n\n", MarkdownText(heading))
                     : fmt::format("\n{}\n", heading));
}

void ReportWriter::AddFact(std::string_view fact) {
  fWrite(fIsMarkdown ? fmt::format("- {}\n", MarkdownText(fact)) : fmt::format("  {}\n", fact));
}

void ReportWriter::AddTable(const TextTable& table) {
  fWrite(fIsMarkdown ? "\n" + table.RenderMarkdown() : table.Render());
}

void ReportWriter::AddSummary(const TextTable& table) {
  if (!table.HasRows()) return;
  fWrite("\n");
  AddTable(table);
}

void ReportWriter::AddUncut(const TextTable& table) {
  if (!table.HasRows()) return;
  AddHeading("Without cut points");
  AddTable(table);
}

}  // namespace MCBinModel
