#pragma once

#include "binmodel/model/binmodel.h"
#include "binmodel/refine/refinesettings.h"

namespace MCBin {

// The model with refined bins. Unless it is `quiet`, a note names the attributes of which one bin
// is left, where that was not asked for. Throws Refusal.
MCBinModel::BinModel Refine(const MCBinModel::BinModel& model,
                            const MCBinModel::RefineSettings& settings, bool quiet);

}  // namespace MCBin
