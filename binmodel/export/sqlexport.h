#pragma once

#include <string>

#include "binmodel/export/exportmodel.h"
#include "binmodel/export/sqldialect.h"

namespace MCBinModel {

// A query that adds the bins of `model` to all columns of a table, with one CASE for each
// attribute: missing values first, then the cut points in ascending order.
//
// `table` may have parts (schema.table); a part that holds a dot is written in double quotes.
// Throws Refusal for what the dialect cannot say, UsageError for a table name that is none.
std::string WriteSql(const ExportModel& model, const SqlDialect& dialect, const std::string& table);

}  // namespace MCBinModel
