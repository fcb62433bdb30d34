#pragma once

#include <string>
#include <vector>

#include "binmodel.h"
#include "binmodelexport.h"

namespace MCBinModel {

// Classes of targets by their names, as people give them: a text as it is, a number as any text
// that reads as it ("1" and "1.0").

// Throws Refusal (RefusalCode::kUnknownClass) for a name that is a class of none of the targets,
// and one of code kNoTargets when there is no target.
MCBINMODEL_API void RequireClasses(const std::vector<VariableInfo>& targets,
                                   const std::vector<std::string>& names);

// Makes each name the event of every target of two classes that has it. The others keep theirs.
// Throws Refusal as RequireClasses() does, for a name that only targets of more classes have
// (RefusalCode::kEvidenceNeedsTwoClasses), and for two names of one target (kTwoEvents).
MCBINMODEL_API void ChooseEvents(std::vector<VariableInfo>& targets,
                                 const std::vector<std::string>& names);

// Puts the classes of every target in order, and the class weights of its results: first those that
// are named, as they are named, then the others, numbers ascending or texts in byte order. A run
// leaves them in the order of the codes that it was given. Throws Refusal as RequireClasses() does.
MCBINMODEL_API void OrderClasses(BinModel& model, const std::vector<std::string>& first = {});

}  // namespace MCBinModel
