#include "binmodel/model/resultselection.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "binmodel/model/refusal.h"

namespace {

using MCBinModel::AttributeBins;
using MCBinModel::BinModel;
using MCBinModel::Refusal;
using MCBinModel::RefusalCode;
using Indexes = std::vector<std::size_t>;

// Two attributes against each of the targets, or without one.
BinModel ModelOf(const std::vector<std::string>& targets) {
  BinModel model;
  model.attributes.resize(2);
  model.attributes[0].name = "a";
  model.attributes[1].name = "b";
  const auto add = [&](std::optional<std::size_t> target) {
    for (std::size_t attribute = 0; attribute < 2; ++attribute) {
      AttributeBins bins;
      bins.attribute = attribute;
      bins.target = target;
      bins.binWeights = {1.0};
      model.results.push_back(bins);
    }
  };
  for (const std::string& name : targets) {
    model.targets.emplace_back().name = name;
    add(model.targets.size() - 1);
  }
  if (targets.empty()) add(std::nullopt);
  return model;
}

template <typename Call>
Refusal RefusalOf(Call call) {
  try {
    call();
  } catch (const Refusal& refusal) {
    return refusal;
  }
  return Refusal("nothing was refused");
}

TEST(SelectResults, TakesTheOnlyTargetOrTheNamedOne) {
  EXPECT_EQ(SelectResults(ModelOf({}), std::nullopt), (Indexes{0, 1}));
  EXPECT_EQ(SelectResults(ModelOf({"y"}), std::nullopt), (Indexes{0, 1}));
  EXPECT_EQ(SelectResults(ModelOf({"y", "z"}), "z"), (Indexes{2, 3}));
}

struct BadChoice {
  RefusalCode code;
  std::vector<std::string> targets;
  std::optional<std::string> name;
  std::string subject;
  std::string detail;
};

TEST(SelectResults, RefusesWhatLeavesNoChoice) {
  const BadChoice choices[] = {
      {RefusalCode::kSeveralTargets, {"y", "z"}, std::nullopt, "", "'y', 'z'"},
      {RefusalCode::kUnknownTarget, {"y", "z"}, "x", "x", "'y', 'z'"},
      {RefusalCode::kNoTargets, {}, "x", "x", ""}};
  for (const BadChoice& choice : choices) {
    const Refusal refusal =
        RefusalOf([&] { SelectResults(ModelOf(choice.targets), choice.name, "f.json"); });
    EXPECT_EQ(refusal.GetCode(), choice.code) << refusal.what();
    EXPECT_EQ(refusal.GetPlace(), "f.json");
    EXPECT_EQ(refusal.GetSubject(), choice.subject);
    EXPECT_EQ(refusal.GetDetail(), choice.detail);
    EXPECT_EQ(std::string(refusal.what()), "f.json: " + refusal.GetReason());
  }
}

}  // namespace
