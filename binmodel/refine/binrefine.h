#pragma once

#include <cstddef>
#include <functional>
#include <string>
#include <vector>

#include "../model/binmodel.h"
#include "../model/binmodelexport.h"
#include "refinesettings.h"

namespace MCBinModel {

// Joins neighbouring bins, so that the result keeps the most of what the settings name among all
// joinings that they allow; docs/method.md has formulas, ties and how it is found. Cut points are
// dropped, never moved, and nothing but the bins is needed: no data.
//
// Weights are summed; of joined bins entropy and gain are measured anew. All else stays as it is,
// and so does a result without bins or without weight in them.
//
// Settings that make no sense by themselves are the caller's fault: shares and differences are 0 to
// 1, weights from 0 up, minBins from 1 up.

// The refined bins of one of the model's results, whatever RefineSettings::attributes says. Throws
// Refusal when there is no such joining (kNoSuchBins), for a cut point that is not there
// (kNoSuchCutPoint), for a target without the two classes that are needed (kRefineNeedsTwoClasses),
// and above 2,000 bins (kTooManyBins).
MCBINMODEL_API AttributeBins RefineBins(const BinModel& model, std::size_t result,
                                        const RefineSettings& settings);

// The model with refined bins, and with DescribeRefinement and the events in its refinements.
// Throws Refusal when any of its results cannot be refined, with a reason for each of these, and
// for an attribute that the model does not have, or that has cut points here and is not to be
// refined (kUnknownAttribute); so all of it is refined, or nothing. `cancel`, if given, is asked
// before each result whether to stop (kCancelled).
MCBINMODEL_API BinModel RefineModel(const BinModel& model, const RefineSettings& settings,
                                    const std::function<bool()>& cancel = nullptr);

// What can be said before there are bins of these variables: throws Refusal for an attribute that
// the settings name wrongly (kUnknownAttribute) and for a target without the two classes that they
// need (kRefineNeedsTwoClasses).
MCBINMODEL_API void CheckRefinement(const std::vector<VariableInfo>& attributes,
                                    const std::vector<VariableInfo>& targets,
                                    const RefineSettings& settings);

// What the settings ask for, such as "at most 5 bins, an increasing event rate, and then the most
// information gain".
MCBINMODEL_API std::string DescribeRefinement(const RefineSettings& settings);

}  // namespace MCBinModel
