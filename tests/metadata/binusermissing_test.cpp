#include <gtest/gtest.h>

#include <cmath>
#include <memory>
#include <vector>

#include "metadata/binnumericusermissing.h"
#include "metadata/binstringusermissing.h"
#include "support/hostusermissing.h"

// The numeric and the string definition side by side.

namespace {

using UserMissingPtr = std::shared_ptr<IBINUserMissing>;  // rows of a table are copied

UserMissingPtr Numbers(const std::vector<double>& values, const char* label = "") {
  auto userMissing = std::make_shared<BINNumericUserMissing>();
  for (const double value : values) userMissing->AddValue(value, label);
  return userMissing;
}

UserMissingPtr NumbersAndInterval(const std::vector<double>& values, double low, double high) {
  auto userMissing = Numbers(values);
  dynamic_cast<BINNumericUserMissing&>(*userMissing).SetInterval({low, high});
  return userMissing;
}

UserMissingPtr Strings(const std::vector<std::string>& values, const char* label = "") {
  auto userMissing = std::make_shared<BINStringUserMissing>();
  for (const std::string& value : values) userMissing->AddValue(value, label);
  return userMissing;
}

TEST(BINUserMissing, EqualityIsTheSameBothWays) {
  struct Row {
    const char* name;
    UserMissingPtr a;
    UserMissingPtr b;
    bool areEqual;
  };
  const Row rows[] = {
      {"LabelsDoNotCount", Numbers({1, 2}, "x"), Numbers({1, 2}, "y"), true},
      {"OrderCounts", Numbers({1, 2}), Numbers({2, 1}), false},
      {"NaN", Numbers({std::nan("")}), Numbers({std::nan("")}), false},
      {"OneInterval", NumbersAndInterval({1}, 0, 0), Numbers({1}), false},
      {"OtherIntervals", NumbersAndInterval({}, 2, 3), NumbersAndInterval({}, 2, 4), false},
      {"NumbersToNull", Numbers({}), nullptr, false},
      {"StringsToNull", Strings({}), nullptr, false},
      {"EmptyOfOtherType", Numbers({}), Strings({}), false},
      {"SameStrings", Strings({"a", "b"}, "x"), Strings({"a", "b"}, "y"), true},
      {"StringOrderCounts", Strings({"a", "b"}), Strings({"b", "a"}), false}};
  for (const auto& [name, a, b, areEqual] : rows) {
    EXPECT_EQ(a->IsEqualTo(b.get()), areEqual) << name;
    EXPECT_EQ(b != nullptr && b->IsEqualTo(a.get()), areEqual) << name;
  }
}

TEST(BINUserMissing, DoesNotTakeAHostsClassForItsOwn) {
  const HostUserMissing numeric(IBINUserMissing::UserMissingNumeric);
  const HostUserMissing string(IBINUserMissing::UserMissingString);
  EXPECT_FALSE(BINNumericUserMissing().IsEqualTo(&numeric));
  EXPECT_FALSE(BINStringUserMissing().IsEqualTo(&string));
}

TEST(BINNumericUserMissing, ContainsDiscreteValuesAndTheIntervalOnly) {
  BINNumericUserMissing userMissing;
  userMissing.AddValue(9, "refused");
  EXPECT_FALSE(userMissing.Contains(0)) << "no interval was set yet";
  EXPECT_EQ(userMissing.GetInterval(), nullptr);

  userMissing.SetInterval({90.0, 95.0});
  userMissing.SetInterval({97.0, 99.0});
  for (const double x : {9.0, 97.0, 99.0}) EXPECT_TRUE(userMissing.Contains(x)) << x;
  for (const double x : {8.0, 92.0, 99.5, std::nan("")}) EXPECT_FALSE(userMissing.Contains(x)) << x;
}

}  // namespace
