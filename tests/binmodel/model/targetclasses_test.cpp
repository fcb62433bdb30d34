#include "binmodel/model/targetclasses.h"

#include <gtest/gtest.h>

#include <optional>
#include <ostream>
#include <string>
#include <vector>

#include "binmodel/model/refusal.h"
#include "support/rowname.h"

namespace {

using MCBinModel::BinModel;
using MCBinModel::RefusalCode;
using MCBinModel::VariableInfo;
using MCBinModel::VariableKind;

// A target of texts, one of numbers, one of three texts; each class's weight tells which it is.
BinModel Model() {
  BinModel model;
  model.attributes.emplace_back().name = "a";
  model.targets = {{"t", VariableKind::kStringCategorical, {}, {}, {"no", "yes"}, 0},
                   {"n", VariableKind::kNumericCategorical, {}, {10, 9}, {}},
                   {"m", VariableKind::kStringCategorical, {}, {}, {"c", "a", "b"}}};
  const std::vector<std::vector<double>> weights = {{1, 2}, {10, 9}, {3, 1, 2}};
  for (std::size_t target = 0; target < weights.size(); ++target) {
    MCBinModel::AttributeBins& bins = model.results.emplace_back();
    bins.target = target;
    bins.classWeights = {weights[target], weights[target]};
    bins.missing = {10.0, weights[target]};
  }
  return model;
}

struct Order {
  const char* name;
  std::vector<std::string> first;
  std::vector<std::vector<double>> weights;  // by target, as the classes stand
};
void PrintTo(const Order& row, std::ostream* os) { *os << row.name; }

class OrderClassesTest : public testing::TestWithParam<Order> {};

TEST_P(OrderClassesTest, MovesWeightsAndEventWithTheClasses) {
  BinModel model = Model();
  OrderClasses(model, GetParam().first);
  for (std::size_t target = 0; target < 3; ++target) {
    const std::vector<double>& weights = GetParam().weights[target];
    EXPECT_EQ(model.results[target].classWeights, (std::vector(2, weights)));
    EXPECT_EQ(model.results[target].missing->classWeights, weights);
  }
  EXPECT_EQ(model.targets[0].GetLabel(model.targets[0].GetEvent()), "no") << "the chosen one";
  EXPECT_EQ(model.targets[1].GetLabel(model.targets[1].GetEvent()), "10") << "the larger one";
}

TEST(Event, IsWhatIsTrueOrComesLater) {
  const auto eventOf = [](const std::vector<std::string>& texts) {
    const VariableInfo target{"t", VariableKind::kStringCategorical, {}, {}, texts};
    return texts[target.GetEvent()];
  };
  EXPECT_EQ(eventOf({"True", "false"}), "True");
  EXPECT_EQ(eventOf({"no", "YES"}), "YES");
  EXPECT_EQ(eventOf({"YES", "true"}), "true") << "two ways to say yes";
  EXPECT_EQ(eventOf({"T", "no"}), "no") << "of two pairs";
}

const Order kOrders[] = {
    {"NumbersAscendingAndTexts", {}, {{1, 2}, {9, 10}, {1, 2, 3}}},
    {"NamedOnesFirst", {"yes", "b", "c", "b"}, {{2, 1}, {9, 10}, {2, 3, 1}}},
    {"NumbersByValue", {"10.0"}, {{1, 2}, {10, 9}, {1, 2, 3}}},
};

INSTANTIATE_TEST_SUITE_P(Orders, OrderClassesTest, testing::ValuesIn(kOrders), RowName);

struct Events {
  const char* name;
  std::vector<std::string> classes;
  std::optional<RefusalCode> refusal;
  std::vector<std::size_t> events = {0, 0};  // of the first two targets
};
void PrintTo(const Events& row, std::ostream* os) { *os << row.name; }

class ChooseEventsTest : public testing::TestWithParam<Events> {};

TEST_P(ChooseEventsTest, ChangesTheTargetsThatHaveTheClass) {
  BinModel model = Model();
  try {
    ChooseEvents(model.targets, GetParam().classes);
    EXPECT_FALSE(GetParam().refusal.has_value());
  } catch (const MCBinModel::Refusal& refusal) {
    EXPECT_EQ(refusal.GetCode(), GetParam().refusal) << refusal.what();
  }
  EXPECT_EQ(model.targets[0].GetEvent(), GetParam().events[0]);
  EXPECT_EQ(model.targets[1].GetEvent(), GetParam().events[1]);
}

const Events kEvents[] = {
    {"None", {}, {}},
    {"One", {"yes"}, {}, {1, 0}},
    {"OneOfEach", {"9e0", "yes"}, {}, {1, 1}},
    {"BothOfOne", {"9", "yes", "no"}, RefusalCode::kTwoEvents},
    {"Unknown", {"yes", "Yes"}, RefusalCode::kUnknownClass},
    {"OfThree", {"yes", "a"}, RefusalCode::kEvidenceNeedsTwoClasses},
};

INSTANTIATE_TEST_SUITE_P(Classes, ChooseEventsTest, testing::ValuesIn(kEvents), RowName);

}  // namespace
