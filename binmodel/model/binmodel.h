#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "binmodel/model/binsettings.h"
#include "binmodel/model/binsource.h"
#include "binmodel/model/variableinfo.h"
#include "common/mcstatus.h"

namespace MCBinModel {

// The bins of one attribute: against one target, or without target (equal-frequency).
struct AttributeBins {
  std::size_t attribute = 0;          // in BinModel::attributes
  std::optional<std::size_t> target;  // in BinModel::targets
  MCBinning::MCStatus status;

  std::vector<double> cutPoints;   // ascending
  std::vector<double> binWeights;  // cut points + 1, or empty when there is no valid case
  std::vector<std::vector<double>> classWeights;  // per bin, by category code of the target

  std::uint64_t distinctValues = 0;
  double validWeight = 0.0;        // of the cases with value (and target) present
  double weightWithMissing = 0.0;  // of all cases
  std::optional<double> minimum;   // nothing when there is no valid case, also below
  std::optional<double> maximum;
  std::optional<double> modelEntropy;     // bits
  std::optional<double> informationGain;  // bits
};

// Everything that a run found: what is printed, and what a bin file holds.
struct BinModel {
  BinSettings settings;
  BinSource source;
  std::vector<VariableInfo> attributes;
  std::vector<VariableInfo> targets;
  std::vector<AttributeBins> results;

  const VariableInfo& GetAttribute(const AttributeBins& bins) const {
    return attributes[bins.attribute];
  }

  // Null for bins without target.
  const VariableInfo* GetTarget(const AttributeBins& bins) const {
    return bins.target ? &targets[*bins.target] : nullptr;
  }
};

}  // namespace MCBinModel
