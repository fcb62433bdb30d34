#pragma once

#include "../model/binmodel.h"
#include "../model/binmodelexport.h"
#include "bincounter.h"

namespace MCBinModel {

// The bins of a model with the counts and measures of other data in the place of its own, as they
// are where cut points were moved by hand, or to go on with newer data. Of the model are the cut
// points, the settings and the refinements; of the source, the numbers of records are those of the
// data, the rest is for the caller to set. Results that were not counted are left out, with their
// variables, and how many distinct values there are is not known (0).
//
// Requires a recount of this model, of results that have the same target or none.
MCBINMODEL_API BinModel WithCounts(const BinModel& model, const Recount& recount);

}  // namespace MCBinModel
