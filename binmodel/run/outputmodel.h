#pragma once

#include <mcbinning/algorithm/binsettings.h>
#include <mcbinning/algorithm/efbinsettings.h>
#include <mcbinning/metadata/binvarlist.h>
#include <mcbinning/output/binoutput.h>
#include <mcbinning/output/efbinoutput.h>

#include "../model/binmodel.h"
#include "../model/binmodelexport.h"

class IBINAlgorithm;
class IEFBINAlgorithm;

namespace MCBinModel {

// The model of what a host has binned itself, as MakeBins() would have made it: with the closed
// side, names, categories, missing values, the weight and how was pre-binned. Everything that takes
// a model can then be done: the bin of a value, statistics, bin files, exports, reports.
//
// Results come target by target, in the order of the list; of a pair that was run twice the first.
// A categorical variable that declares a number of categories alone gets their codes as categories.
// Results that were refused before they were run are left out. Throws Refusal for numbers that are
// not finite and when there is no result.
MCBINMODEL_API BinModel MakeBinModel(const BINOutput& output, const ::BINSettings& settings,
                                     const BINVarList& variables);
MCBINMODEL_API BinModel MakeBinModel(const EFBINOutput& output, const ::EFBINSettings& settings,
                                     const BINVarList& variables);

// The same of an algorithm after its runs, with the number of records and of those dropped.
MCBINMODEL_API BinModel MakeBinModel(const IBINAlgorithm& algorithm);
MCBINMODEL_API BinModel MakeBinModel(const IEFBINAlgorithm& algorithm);

}  // namespace MCBinModel
