#pragma once

#include <cstddef>
#include <numeric>
#include <string>
#include <utility>
#include <vector>

#include "binmodel/model/binmodel.h"

// Results without a run. `attributes` are names with the weights of their bins by class, or with
// one weight a bin where there are no classes; the cut points are 1, 2, 3, ..., and a quarter of
// the weight of all cases is missing.
inline MCBinModel::BinModel SampleBins(
    const std::vector<std::string>& classes,
    const std::vector<std::pair<std::string, std::vector<std::vector<double>>>>& attributes) {
  MCBinModel::BinModel model;
  if (!classes.empty()) {
    model.targets.emplace_back();
    model.targets[0].name = "t";
    model.targets[0].kind = MCBinModel::VariableKind::kStringCategorical;
    model.targets[0].texts = classes;
  } else {
    model.settings.algorithm = MCBinModel::Algorithm::kEqualFrequency;
  }
  for (const auto& [name, weights] : attributes) {
    MCBinModel::AttributeBins bins;
    bins.attribute = model.attributes.size();
    model.attributes.emplace_back().name = name;
    for (const std::vector<double>& classWeights : weights) {
      if (!bins.binWeights.empty()) {
        bins.cutPoints.push_back(static_cast<double>(bins.binWeights.size()));
      }
      bins.binWeights.push_back(std::accumulate(classWeights.begin(), classWeights.end(), 0.0));
      bins.validWeight += bins.binWeights.back();
    }
    bins.weightWithMissing = bins.validWeight * 4.0 / 3.0;
    if (!classes.empty()) {
      bins.target = 0;
      bins.classWeights = weights;
      bins.modelEntropy = 0.5;
      bins.informationGain = 0.25;
    }
    model.results.push_back(bins);
  }
  return model;
}
