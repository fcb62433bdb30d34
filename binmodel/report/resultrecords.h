#pragma once

#include <cstddef>
#include <vector>

#include "binmodel/report/binreport.h"
#include "binmodel/report/datatable.h"

namespace MCBinModel {

// What reports say, as records for programs. Those of a target's classes are called share:CLASS and
// weight:CLASS.

// One for each of these results, or for each of their bins.
DataTable ListResults(const BinModel& model, const std::vector<std::size_t>& results);
DataTable ListBins(const BinModel& model, const std::vector<std::size_t>& results);

// The same of other data beside the model, for each data; `order` are indexes of recounted results.
DataTable ListRecountedResults(const BinModel& model, const std::vector<NamedRecount>& data,
                               const std::vector<std::size_t>& order);
DataTable ListRecountedBins(const BinModel& model, const std::vector<NamedRecount>& data,
                            const std::vector<std::size_t>& order);

}  // namespace MCBinModel
