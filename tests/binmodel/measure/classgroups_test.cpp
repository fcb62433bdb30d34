#include "binmodel/measure/classgroups.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace {

using MCBinModel::BinModel;
using MCBinModel::ClassGroup;
using MCBinModel::VariableKind;

// One result with two bins; the weights of the first by category, and twice as much of each in
// the second.
BinModel ModelOf(const std::vector<std::string>& categories, std::vector<double> weights) {
  BinModel model;
  model.targets.push_back({"y", VariableKind::kStringCategorical, {}, {}, categories});
  MCBinModel::AttributeBins& bins = model.results.emplace_back();
  bins.target = 0;
  bins.classWeights = {weights};
  for (double& weight : weights) weight *= 2.0;
  bins.classWeights.push_back(weights);
  return model;
}

std::vector<std::string> LabelsOf(const std::vector<ClassGroup>& groups) {
  std::vector<std::string> labels;
  for (const ClassGroup& group : groups) labels.push_back(group.label);
  return labels;
}

using Labels = std::vector<std::string>;

TEST(ClassGroups, PutTheEventOfTwoFirst) {
  EXPECT_EQ(LabelsOf(GroupClasses(ModelOf({"no", "yes"}, {9, 1}), 0)), (Labels{"yes", "no"}));
  EXPECT_EQ(LabelsOf(GroupClasses(ModelOf({"yes", "no"}, {1, 9}), 0)), (Labels{"yes", "no"}));
}

TEST(ClassGroups, KeepCodeOrderUpToEight) {
  EXPECT_EQ(LabelsOf(GroupClasses(
                ModelOf({"h", "g", "f", "e", "d", "c", "b", "a"}, {1, 2, 3, 4, 5, 6, 7, 8}), 0)),
            (Labels{"h", "g", "f", "e", "d", "c", "b", "a"}));
}

TEST(ClassGroups, NameTheSevenLargestAndJoinTheOthers) {
  const BinModel model = ModelOf({"a", "b", "c", "d", "e", "f", "g", "h", "i", "j"},
                                 {1, 20, 30, 2, 40, 50, 3, 60, 70, 80});
  const std::vector<ClassGroup> groups = GroupClasses(model, 0);
  EXPECT_EQ(LabelsOf(groups), (Labels{"j", "i", "h", "f", "e", "c", "b", "3 others"}));
  EXPECT_EQ(groups.back().codes, (std::vector<std::size_t>{6, 3, 0}));
  EXPECT_EQ(GroupWeight(groups.back(), model.results[0].classWeights[1]), 12.0);
  EXPECT_EQ(GroupWeight(groups.front(), model.results[0].classWeights[1]), 160.0);
}

}  // namespace
