#pragma once

#include <mcbinmodel/model/binmodel.h>

#include <cstddef>
#include <cstdint>
#include <map>
#include <optional>
#include <string>
#include <vector>

#include "frame.h"
#include "table.h"

namespace MCBinPython {

// What bins are written as.
enum class Form { kIndex, kLabel, kEvidence, kInterval };

// Which column of a table a variable is read from, by its name.
using ColumnIndexes = std::map<std::string, std::size_t>;

// What a table of weighted cases stands for, when its rows are not the records themselves.
struct SummarisedRecords {
  std::uint64_t count = 0;
  MCBinModel::DroppedRecords dropped;
  std::optional<std::string> weight;  // the column of the weights, where records have some
};

struct Applied {
  Frame frame;
  std::map<std::string, std::size_t> unknown;  // categories that the bins do not know, by attribute
};

// The bins of the values of a table, for these results of a model: a column each, named after its
// attribute with a suffix. Throws Refusal for what the form cannot say. Needs no interpreter.
Applied Apply(const MCBinModel::BinModel& model, const std::vector<std::size_t>& results,
              const Table& table, const ColumnIndexes& columns, Form form,
              const std::string& suffix);

// The model with its results counted anew on a table: with the weights of the column `weight`,
// where there is one. `report`, where it is wanted, is the comparison of the two in words. The
// weights of summarised records are those that they have after rounding. Needs no interpreter.
MCBinModel::BinModel CountOn(const MCBinModel::BinModel& model,
                             const std::vector<std::size_t>& results, const Table& table,
                             const ColumnIndexes& columns, std::optional<std::size_t> weight,
                             const std::string& name,
                             const std::optional<SummarisedRecords>& summarised,
                             std::string* report);

}  // namespace MCBinPython
