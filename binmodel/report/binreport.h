#pragma once

#include <cstddef>
#include <functional>
#include <string>
#include <string_view>
#include <vector>

#include "../apply/bincounter.h"
#include "../model/binmodel.h"
#include "../model/binmodelexport.h"

namespace MCBinModel {

// What bins look like to people: an HTML page, and tables for a terminal or a document; the same
// numbers as records for programs.
//
// All text is UTF-8. Names and categories are shown with escapes for what a reader would not see
// (control characters, directions, characters without width), and shortened where they are long.
// Nothing is printed here and nothing else is read: the caller says how it may look, and gets the
// text. A model with no results makes a report without any.

// Takes the next piece of a text. What it throws ends the report and reaches the caller.
using TextSink = std::function<void(std::string_view)>;

// kText and kMarkdown are for people, with rounded numbers. The others have a record a line with
// all digits: comma- and tab-separated values, and a JSON array of objects of the same fields.
enum class TableFormat { kText, kMarkdown, kCsv, kTsv, kJson };

// How tables may look, and how much they say.
struct TextStyle {
  bool bars = false;   // block characters beside percentages, which need a UTF-8 terminal
  bool color = false;  // escape sequences that tell the classes apart
  TableFormat format = TableFormat::kText;  // bars and colours are for kText
  bool summaryOnly = false;                 // the ranking, without a table for each attribute
  std::size_t top = 0;  // only the first of the ranking; 0: all, and tables of the first 100
};

// The results as tables: a summary line for each, then a table for each that has cut points, and a
// line for each that has none. Those of supervised binning are ordered by information gain, the
// most informative first; the others come in the order of the model. As records there is one for
// each bin, the missing cases included, or with `summaryOnly` one for each result.
MCBINMODEL_API void WriteTextReport(const BinModel& model, const TextStyle& style,
                                    const TextSink& write);

// What the model says and what other data say side by side: a summary line for each attribute,
// then a table for each, in the order of the recount; those without cut points come last, with a
// line each. `dataName` is what the data are called.
// Requires a recount of this model with at least one result. Where its counts know no target (see
// WithoutTargets()), neither does the report.
MCBINMODEL_API void WriteEvaluationReport(const BinModel& model, const Recount& recount,
                                          std::string_view dataName, const TextSink& write);

// Other data, and what they are called.
struct NamedRecount {
  std::string name;  // a file's, say
  Recount recount;   // of them
};

// The same in a style, and of several data, such as months: then a column for each, and a line or
// table for each measure. Requires at least one recount, all of the same results.
MCBINMODEL_API void WriteEvaluationReport(const BinModel& model,
                                          const std::vector<NamedRecount>& data,
                                          const TextStyle& style, const TextSink& write);

// The results as one HTML page that needs nothing else: no scripts, no network. It is XML as
// well. A ranking of the attributes comes first, for each target, then a chart and a table for
// each result.
MCBINMODEL_API std::string MakeHtmlReport(const BinModel& model);

}  // namespace MCBinModel
