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

// What missing values are called where labels are written.
constexpr const char* kMissingLabel = "missing";

// The values of all bins, from the lowest up. Throws Refusal when weight of evidence is
// asked for without a target of two classes.
MCBINMODEL_API std::vector<BinValue> MakeBinValues(const BinModel& model, const AttributeBins& bins,
                                                   BinForm form);

// What a missing value becomes: the label or the weight of evidence of the missing cases, if the
// model has counted them; no index. Nothing otherwise, and for a weight of evidence that does not
// exist. Throws Refusal as MakeBinValues() does.
MCBINMODEL_API BinValue MakeMissingValue(const BinModel& model, const AttributeBins& bins,
                                         BinForm form);

}  // namespace MCBinModel
