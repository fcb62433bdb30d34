#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <vector>

#include "binmodel/model/binmodel.h"

namespace MCBinModel {

// The results of a bin file for one of its targets, as indexes into BinModel::results in the
// file's order. Without a name the file's only target, or all results of a file without
// targets. `fileName` is for messages.
//
// Throws Refusal for a target that the file does not have, when the file has several and
// none is named, and when no result is left.
std::vector<std::size_t> SelectResults(const BinModel& model, const std::string& fileName,
                                       const std::optional<std::string>& target);

}  // namespace MCBinModel
