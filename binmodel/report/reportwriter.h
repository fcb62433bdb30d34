#pragma once

#include <string_view>

#include "binmodel/report/binreport.h"
#include "binmodel/report/texttable.h"

namespace MCBinModel {

// A report for people, piece by piece: as text for a terminal, or as Markdown. Texts are printable.
class ReportWriter {
 public:
  // Borrows the sink. Requires a format for people.
  ReportWriter(TableFormat format, const TextSink& write);

  void AddTitle(std::string_view title);
  void AddHeading(std::string_view heading);  // after what stands above it
  void AddFact(std::string_view fact);        // a line below a title or a heading
  void AddTable(const TextTable& table);
  void AddSummary(const TextTable& table);  // below the title, of the results with cut points
  void AddUncut(const TextTable& table);    // at the end, of those without

 private:
  const bool fIsMarkdown;
  const TextSink& fWrite;
};

}  // namespace MCBinModel
