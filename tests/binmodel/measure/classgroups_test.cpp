#include "binmodel/measure/classgroups.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "binmodel/samplebins.h"

namespace {

using MCBinModel::ClassGroup;

std::vector<std::string> LabelsOf(const std::vector<ClassGroup>& groups) {
  std::vector<std::string> labels;
  for (const ClassGroup& group : groups) labels.push_back(group.label);
  return labels;
}

using Labels = std::vector<std::string>;

TEST(ClassGroups, PutTheEventFirstAndJoinTheSmallestOfMany) {
  const auto labelsOf = [](const Labels& classes, const std::vector<double>& weights) {
    return LabelsOf(GroupClasses(SampleBins(classes, {{"x", {weights}}}), 0));
  };
  EXPECT_EQ(labelsOf({"no", "yes"}, {9, 1}), (Labels{"yes", "no"}));
  EXPECT_EQ(labelsOf({"yes", "no"}, {1, 9}), (Labels{"yes", "no"}));
  const Labels eight = {"h", "g", "f", "e", "d", "c", "b", "a"};
  EXPECT_EQ(labelsOf(eight, {1, 2, 3, 4, 5, 6, 7, 8}), eight) << "in code order";

  const auto model = SampleBins({"a", "b", "c", "d", "e", "f", "g", "h", "i", "j"},
                                {{"x", {{1, 20, 30, 2, 40, 50, 3, 60, 70, 80}}}});
  const std::vector<ClassGroup> groups = GroupClasses(model, 0);
  EXPECT_EQ(LabelsOf(groups), (Labels{"j", "i", "h", "f", "e", "c", "b", "others (3 classes)"}));
  EXPECT_EQ(groups.back().codes, (std::vector<std::size_t>{6, 3, 0}));
  EXPECT_EQ(GroupWeight(groups.back(), model.results[0].classWeights[0]), 6.0);
}

}  // namespace
