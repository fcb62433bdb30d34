#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <vector>

#include "binmodel.h"
#include "binmodelexport.h"

namespace MCBinModel {

// The results of a model for one of its targets, as indexes into BinModel::results in their
// order. Without a name the only target's, or all results of a model without targets. `place`
// says in a refusal where the model is from, such as the name of a file.
//
// Throws Refusal for a target that the model does not have, when there are several and none is
// named, and when no result is left.
MCBINMODEL_API std::vector<std::size_t> SelectResults(const BinModel& model,
                                                      const std::optional<std::string>& target,
                                                      const std::string& place = {});

// Of these results, those that can be used: without the ones that ended in an error and have no
// bins, which is something else than a value that is missing. `notes` gets a line that names them.
// Throws Refusal when all of them ended so.
MCBINMODEL_API std::vector<std::size_t> LeaveOutFailedResults(
    const BinModel& model, const std::vector<std::size_t>& results, std::vector<std::string>& notes,
    const std::string& place = {});

// What the result is without its target: weights of bins alone.
MCBINMODEL_API void DropTarget(AttributeBins& bins);

// The model as if nothing were known about its targets: what data without a target column can be
// counted for. Results keep their places.
MCBINMODEL_API BinModel WithoutTargets(BinModel model);

}  // namespace MCBinModel
