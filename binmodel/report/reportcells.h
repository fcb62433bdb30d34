#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <vector>

#include "binmodel/measure/evidence.h"
#include "binmodel/model/binmodel.h"

namespace MCBinModel {

// What reports have in common: widths of texts in tables for a terminal, cells and facts, the order
// of results.

constexpr std::size_t kNameWidth = 32;        // of an attribute or a target
constexpr std::size_t kLabelWidth = 16;       // of a class
constexpr std::size_t kMostCountColumns = 4;  // a target with more classes has no column of weights
constexpr std::size_t kMostClassColumns = 12;  // nor one of shares with more than these

// What a result is called: "age by death".
std::string ResultTitle(const BinModel& model, const AttributeBins& bins);

// A measure with four decimals; "-" when it does not exist.
std::string MeasureCell(const std::optional<double>& measure);

// "ok", or such as "warning: no valid case (120015)", also in HTML. That no split was accepted is
// a result and no warning: "no cut: close", or what else the best one means.
std::string StatusCell(const AttributeBins& bins);

// What follows it where there is room: the best split and its numbers, after a semicolon; empty
// when there is none.
std::string BestSplitText(const BinModel& model, const AttributeBins& bins);

// Indexes of the results: the largest information gain first, those without a gain last, otherwise
// in the order of the results.
std::vector<std::size_t> OrderByGain(const std::vector<AttributeBins>& results);

// Of the cases that shares are taken of: those with a value, and the missing ones if they were
// counted.
double CountedWeight(const AttributeBins& bins);

// Whether the result is about a target of two classes.
bool HasTwoClasses(const BinModel& model, const AttributeBins& bins);

// The missing cases as a bin to show; null when they were not counted or there are none.
const MissingBin* FindMissingBin(const AttributeBins& bins);

// The target's weights over all bins, that of the missing cases included, by category code.
std::vector<double> SumCountedClassWeights(const AttributeBins& bins);

// "weight 120 valid, 12 missing, 3 without target".
std::string WeightFact(const AttributeBins& bins);

// Whether they were counted: other data's are not.
bool KnowsDistinctValues(const AttributeBins& bins);

// "22 distinct values from 0.1 to 2.5", or "3 categories"; empty when no case is valid.
std::string ValuesFact(const BinModel& model, const AttributeBins& bins);

// "information value 0.4012 (0.3871 without missing)", its measures written by `cell`.
std::string InformationValueFact(const AttributeBins& bins, const Evidence& evidence,
                                 std::string (*cell)(const std::optional<double>& measure));

// The name of the event and the adjustment: "event yes" or "event yes, 0.5 added to both classes of
// each bin"; empty without two classes.
std::string EventFact(const BinModel& model, const VariableInfo& target);

}  // namespace MCBinModel
