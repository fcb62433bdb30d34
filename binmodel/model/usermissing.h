#pragma once

#include <memory>

#include "binmodel/model/missingdefinition.h"
#include "metadata/binnumericusermissing.h"
#include "metadata/binstringusermissing.h"

namespace MCBinModel {

// The definition as objects of libmcbinning: its numbers and interval, and its texts.
std::unique_ptr<BINNumericUserMissing> MakeNumericUserMissing(const MissingDefinition& missing);
std::unique_ptr<BINStringUserMissing> MakeStringUserMissing(const MissingDefinition& missing);

}  // namespace MCBinModel
