#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <vector>

#include "../apply/binvalues.h"
#include "../model/binmodel.h"
#include "../model/binmodelexport.h"

namespace MCBinModel {

// Bins as rules in other languages. Values get the bin that they have here: missing ones first,
// then the cut points in ascending order, bit for bit. Missing are what the model declares missing
// for the attribute, NaN, those of the source's missing texts that are numbers, categories that
// the model does not know, and the most negative double.
//
// `results` are indexes into BinModel::results, at most one for each attribute and all for the
// same target, or all without one: what SelectResults() gives. The rules stand in this order.
// There are none for an attribute that has no bins because of an error; LeaveOutFailedResults()
// names them.
//
// Text is UTF-8. Control characters in names and categories are written as escapes where the
// language has them. Every function throws Refusal when a new column would have the name of an
// attribute or a target, when `missingText` is not of the type of the new columns, when weights of
// evidence are asked for without a target of two classes, for a name or a category that the
// language cannot write, and when no attribute has bins.

// How the new columns look.
struct ExportOptions {
  BinForm form = BinForm::kIndex;  // what they hold
  std::string suffix = "_bin";     // the new column's name is that of the attribute and this

  // What missing values become: a whole number for indexes, a number for weights of evidence, or
  // any text for labels. Unset: what MakeMissingValue() says, or else what the language has for "no
  // value".
  std::optional<std::string> missingText;
};

// A query that adds the bins to all columns of a table, with one CASE for each attribute.
//
// `table` may have parts (schema.table); a part with a dot or quotes is written in double quotes.
// Throws Refusal for a table name that is none, a dialect that SqlDialectNames() does not have, and
// for an infinite weight of evidence in a dialect that has no infinity.
MCBINMODEL_API std::string ExportSql(const BinModel& model, const std::vector<std::size_t>& results,
                                     const ExportOptions& options, const std::string& dialect,
                                     const std::string& table);

// The names of the dialects: "ansi" first, then databases.
MCBINMODEL_API std::vector<std::string> SqlDialectNames();

// A PMML 4.4 document whose transformation dictionary derives the bins: Discretize for intervals,
// MapValues for categories, Apply around them for an interval of missing values. Without a value
// for it a missing value stays missing.
MCBINMODEL_API std::string ExportPmml(const BinModel& model,
                                      const std::vector<std::size_t>& results,
                                      const ExportOptions& options);

// A Python module with one function, assign_bins, that needs NumPy only: it takes the columns by
// name and returns the new ones. Without a value for it a missing value becomes -1 (index), None
// (label) or NaN (weight of evidence).
MCBINMODEL_API std::string ExportPython(const BinModel& model,
                                        const std::vector<std::size_t>& results,
                                        const ExportOptions& options);

}  // namespace MCBinModel
