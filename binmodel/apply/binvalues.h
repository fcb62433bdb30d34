#pragma once

#include <cstdint>
#include <string>
#include <variant>
#include <vector>

#include "../model/binmodel.h"
#include "../model/binmodelexport.h"

namespace MCBinModel {

enum class BinForm { kIndex, kLabel, kWeightOfEvidence };

// What a bin is written as: its index, its label or its weight of evidence, which may be
// infinite; nothing for a weight of evidence that does not exist.
using BinValue = std::variant<std::monostate, std::int64_t, double, std::string>;

// The values of all bins, from the lowest up. Throws Refusal when weight of evidence is
// asked for without a target of two classes.
MCBINMODEL_API std::vector<BinValue> MakeBinValues(const BinModel& model, const AttributeBins& bins,
                                                   BinForm form);

}  // namespace MCBinModel
