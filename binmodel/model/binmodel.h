#pragma once

#include <mcbinning/common/mcstatus.h>

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "binsettings.h"
#include "binsource.h"
#include "variableinfo.h"

namespace MCBinModel {

// The cases that lack an attribute's value, or whose value is a user-missing one, while their
// weight (and target) is there: one more bin, beside those that cut points make.
struct MissingBin {
  double weight = 0.0;               // of these cases
  std::vector<double> classWeights;  // by category code of the target; empty without target
};

// A split in two that came closest to being accepted; docs/method.md, "Accepting it".
struct BestSplit {
  double cutPoint;   // between its two sides
  double gain;       // of information about the target, bits
  double threshold;  // what the gain did not exceed, bits
};

// The bins of one attribute: against one target, or without target. What the run did not get to,
// for lack of valid cases or because of an error, keeps its default.
struct AttributeBins {
  std::size_t attribute = 0;          // in BinModel::attributes
  std::optional<std::size_t> target;  // in BinModel::targets
  MCBinning::MCStatus status;         // how it went; docs/status-codes.md

  std::vector<double> cutPoints;   // ascending
  std::vector<double> binWeights;  // one more than cut points, or empty when there are no bins
  std::vector<std::vector<double>> classWeights;  // per bin, by category code of the target

  // Of the attribute, among the valid cases; of equal-frequency bins among those with a value,
  // whether or not the target is there.
  std::uint64_t distinctValues = 0;
  double validWeight = 0.0;            // of the cases with value (and target) present
  double weightWithMissing = 0.0;      // of all cases
  std::optional<double> minimum;       // of the valid cases; nothing when there is none, also below
  std::optional<double> maximum;       // the same
  std::optional<double> modelEntropy;  // bits
  std::optional<double> informationGain;  // bits
  std::optional<BestSplit> bestSplit;     // only without cut points, and when there was a split

  // Counted by the run, and by BinCounter; nothing when that is not known, as of a bin file of
  // version 1.
  std::optional<MissingBin> missing;

  // Cut points were moved since the cases were counted, as by hand in a bin file: weights and
  // measures are those of the bins before. WithCounts() takes counts of other data.
  bool hasMovedCutPoints = false;
};

// Everything that a run found: what is printed, and what a bin file holds. A plain value; copies
// share nothing.
struct BinModel {
  BinSettings settings;                  // how the bins were made
  BinSource source;                      // of what data
  std::vector<VariableInfo> attributes;  // what AttributeBins::attribute is an index of
  std::vector<VariableInfo> targets;     // what AttributeBins::target is; categorical ones;
                                         // equal-frequency bins may do without
  std::vector<AttributeBins> results;    // target by target, each attribute once
  std::vector<std::string> refinements;  // what the bins were joined for afterwards, in words

  // The attribute of one of the results.
  const VariableInfo& GetAttribute(const AttributeBins& bins) const {
    return attributes[bins.attribute];
  }

  // The target of one of the results; null for bins without target.
  const VariableInfo* GetTarget(const AttributeBins& bins) const {
    return bins.target ? &targets[*bins.target] : nullptr;
  }
};

}  // namespace MCBinModel
