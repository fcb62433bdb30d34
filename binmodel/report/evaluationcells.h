#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

#include "binmodel/apply/bincounter.h"
#include "binmodel/model/binmodel.h"
#include "binmodel/report/binreport.h"

namespace MCBinModel {

// What the report on one other data and that on several have in common. `order` are indexes of
// recounted results.

// The names of all bins; the missing cases are the one behind the last.
std::vector<std::string> BinNames(const BinModel& model, const AttributeBins& bins);

// ", target t (event yes)"; empty without a target.
std::string TargetFact(const BinModel& model, const VariableInfo* target);

// Those that take part.
std::uint64_t UsedRecords(const Recount& recount);

// Whether the stability index of one of these results is not the one without missing cases.
bool AnyHasMissing(const BinModel& model, const NamedRecount& data,
                   const std::vector<std::size_t>& order);

}  // namespace MCBinModel
