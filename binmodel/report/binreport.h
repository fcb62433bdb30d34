#pragma once

#include <functional>
#include <string>
#include <string_view>

#include "../model/binmodel.h"
#include "../model/binmodelexport.h"

namespace MCBinModel {

struct Recount;

// What bins look like to people: an HTML page, and tables for a terminal.
//
// All text is UTF-8. Names and categories are shown with escapes for what a reader would not see
// (control characters, directions, characters without width), and shortened where they are long.
// Nothing is printed here and nothing else is read: the caller says how it may look, and gets the
// text. A model with no results makes a report without any.

// Takes the next piece of a text. What it throws ends the report and reaches the caller.
using TextSink = std::function<void(std::string_view)>;

// How tables for a terminal may look.
struct TextStyle {
  bool bars = false;   // block characters beside percentages, which need a UTF-8 terminal
  bool color = false;  // escape sequences that tell the classes apart
};

// The results as tables: a summary line for each, then a table for each. Those of supervised
// binning are ordered by information gain, the most informative first; the others come in the
// order of the model.
MCBINMODEL_API void WriteTextReport(const BinModel& model, const TextStyle& style,
                                    const TextSink& write);

// What the model says and what other data say side by side: a summary line for each attribute,
// then a table for each, in the order of the recount. `dataName` is what the data are called.
// Requires a recount of this model with at least one result.
MCBINMODEL_API void WriteEvaluationReport(const BinModel& model, const Recount& recount,
                                          std::string_view dataName, const TextSink& write);

// The results as one HTML page that needs nothing else: no scripts, no network. It is XML as
// well. A ranking of the attributes comes first, for each target, then a chart and a table for
// each result.
MCBINMODEL_API std::string MakeHtmlReport(const BinModel& model);

}  // namespace MCBinModel
