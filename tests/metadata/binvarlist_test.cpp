#include "metadata/binvarlist.h"

#include <gtest/gtest.h>

#include <limits>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "metadata/bincatnumencoder.h"
#include "metadata/bincatvar.h"
#include "metadata/bincontvar.h"
#include "metadata/binnumericusermissing.h"
#include "metadata/binstringencoder.h"
#include "metadata/binstringusermissing.h"
#include "support/displaytext.h"
#include "support/hostusermissing.h"

namespace {

using Var = IBINVariable;
using Strings = std::vector<std::string>;
using Ints = std::vector<int>;

// Indexes of the list below.
enum { kAge, kSpecies, kSex, kWeight, kIncome };

// Two continuous attributes, a numeric target, a string attribute and a weight.
BINVarList FiveVariables() {
  BINVarList list;
  list.AddContVar("age", "Age", Var::RoleAttribute);
  list.AddCatVar("species", "Species", {1, 2, 3}, Var::RoleTarget);
  list.AddCatVar("sex", "Sex", Strings{"f", "m"}, Var::RoleAttribute);
  list.AddWeightVar("w", "", Var::RoundClosest);
  list.AddContVar("income", "Income", Var::RoleAttribute);
  return list;
}

TEST(BINVarList, RefusesWithoutChange) {
  BINVarList list = FiveVariables();
  const std::string before = DisplayText(list);
  const Strings two = {"a", "b"};
  EXPECT_EQ(list.AddContVar("", "", Var::RoleAttribute), -1);
  EXPECT_EQ(list.AddContVar("sex", "", Var::RoleAttribute), -1);
  EXPECT_EQ(list.AddContVar("w", "", Var::RoleAttribute), -1) << "the weight's name is taken too";
  EXPECT_EQ(list.AddContVar("t", "", Var::RoleTarget), -1);
  EXPECT_EQ(list.AddCatVar("age", "", 2, Var::MeasureNumericCategorical, Var::RoleTarget), -1);
  EXPECT_EQ(list.AddCatVar("age", "", {1, 2}, Var::RoleTarget), -1);
  EXPECT_EQ(list.AddCatVar("age", "", two, Var::RoleTarget), -1);
  EXPECT_EQ(list.AddCatVar("", "", two, two, Var::RoleTarget), -1);
  EXPECT_EQ(list.AddCatVar("t", "", std::vector<double>{1}, Var::RoleTarget), -1);
  EXPECT_EQ(list.AddCatVar("t", "", Strings{"a"}, two, Var::RoleTarget), -1);
  EXPECT_EQ(list.AddWeightVar("w2", "", Var::RoundClosest), -1);
  EXPECT_EQ(DisplayText(list), before);
}

TEST(BINVarList, KnowsItsNamesThoughVariablesAreRenamedRemovedAndCopied) {
  BINVarList list = FiveVariables();
  dynamic_cast<BINContVar&>(*list.GetVarAt(kAge)) = BINContVar("years", "", Var::RoleAttribute);
  EXPECT_EQ(list.AddContVar("years", "", Var::RoleAttribute), -1);
  EXPECT_EQ(BINVarList(list).AddContVar("years", "", Var::RoleAttribute), -1);
  BINVarList assigned;
  assigned.AddContVar("gone", "", Var::RoleAttribute);
  assigned = list;
  EXPECT_EQ(assigned.AddContVar("years", "", Var::RoleAttribute), -1);
  EXPECT_EQ(assigned.AddContVar("gone", "", Var::RoleAttribute), 5);
  EXPECT_EQ(list.AddContVar("age", "", Var::RoleAttribute), 5);
  list.RemoveVar("years");
  EXPECT_EQ(list.AddContVar("years", "", Var::RoleAttribute), 5);
}

TEST(BINVarList, ListedCategoriesAreEncodedInOrder) {
  BINVarList list;
  list.AddCatVar("n", "", {7, 7, 5}, Strings{"seven", "five"}, Var::RoleAttribute);
  list.AddCatVar("s", "", Strings{"b", "a"}, Strings{"B", "A"}, Var::RoleAttribute);
  EXPECT_EQ(list.GetVarAt(0)->GetNumberOfCategories(), 3) << "as many as were listed";
  const auto& numbers = dynamic_cast<const BINCatNumEncoder&>(*list.GetEncoderAt(0));
  EXPECT_EQ(numbers.GetNumberOfCategories(), 2);
  EXPECT_EQ(numbers.EncodeConst(5), 1.0);
  const auto& strings = dynamic_cast<const BINStringEncoder&>(*list.GetEncoderAt(1));
  EXPECT_EQ(strings.Decode(1) + strings.GetValueLabels()->at(1), "aA");
  EXPECT_EQ(list.UpdateNumbersOfCategories(), 5);
}

TEST(BINVarList, OutOfRangeThereIsNothing) {
  BINVarList list = FiveVariables();
  for (const int i : {-1, 5, std::numeric_limits<int>::min()}) {
    EXPECT_EQ(list.GetEncoderAt(i), nullptr);
    EXPECT_EQ(list.GetVariableRole(i), Var::RoleUndefined);
    EXPECT_FALSE(list.SetVariableRole(i, Var::RoleTarget));
    EXPECT_FALSE(list.AddDiscreteUserMissing(i, 1.0, ""));
    EXPECT_FALSE(list.AddDiscreteUserMissing(i, "a", ""));
    EXPECT_FALSE(list.SetMissingInterval(i, 1, 2));
    EXPECT_FALSE(list.RemoveVar(i));
  }
  EXPECT_FALSE(list.RemoveVar("nobody"));
}

TEST(BINVarList, ANewTargetReplacesTheRecordedOneAChangedRoleDoesNot) {
  BINVarList list = FiveVariables();
  EXPECT_TRUE(list.SetVariableRole(kAge, Var::RoleTarget));
  EXPECT_EQ(list.GetTargetIndex(), kSpecies);
  EXPECT_EQ(list.GetVariableRole(kAge), Var::RoleTarget);
  EXPECT_TRUE(list.SetVariableRole(kAge, Var::RoleAttribute));
  EXPECT_EQ(list.GetTargetIndex(), -1);
  EXPECT_TRUE(list.SetVariableRole(kWeight, Var::RoleTarget));
  EXPECT_EQ(list.GetTargetIndex(), kWeight);
  EXPECT_EQ(list.GetVariableRole(kWeight), Var::RoleFrequencyWeight);
  EXPECT_EQ(list.AddCatVar("t", "", {1, 2}, Var::RoleTarget), 5);
  EXPECT_EQ(list.GetTargetIndex(), 5);
  BINVarList without(list);
  without.RemoveVar(kSpecies);
  EXPECT_EQ(without.GetTargetIndex(), -1) << "it had the target role too";
  list.SetVariableRole(5, Var::RoleAttribute);
  list.SetVariableRole(kWeight, Var::RoleTarget);
  list.RemoveVar(kWeight);
  EXPECT_EQ(list.GetTargetIndex(), -1) << "never the index of another variable";
}

TEST(BINVarList, RemovalMovesIndexesAndCounts) {
  struct Row {
    int removed, target, weight, continuous, categorical;
  };
  for (const Row& row : {Row{kAge, 0, 2, 1, 2},
                         {kSpecies, -1, 2, 2, 1},
                         {kSex, 1, 2, 2, 1},
                         {kWeight, 1, -1, 2, 2},
                         {kIncome, 1, 3, 1, 2}}) {
    BINVarList list = FiveVariables();
    EXPECT_TRUE(list.RemoveVar(list.GetVarAt(row.removed)->GetVariableName()));
    EXPECT_EQ((Ints{list.Size(), list.GetTargetIndex(), list.GetWeightIndex(), list.GetNumContVar(),
                    list.GetNumCatVar()}),
              (Ints{4, row.target, row.weight, row.continuous, row.categorical}))
        << "variable " << row.removed << " removed";
  }
}

IBINUserMissing* None() { return nullptr; }
IBINUserMissing* Numbers() { return new BINNumericUserMissing; }
IBINUserMissing* StringsOnly() { return new BINStringUserMissing; }
template <int dataType>
IBINUserMissing* Host() {
  return new HostUserMissing(dataType);
}

// Whether a variable has no missing values yet, some of the list's or the host's own. The measure
// level alone decides about the answer, also where nobody takes the values.
TEST(BINVarList, TakesTheMissingValuesThatFit) {
  struct Row {
    Var::MeasureLevel level;
    IBINUserMissing* (*held)();
    const char* taken;  // of n(umber), s(tring) and i(nterval)
    bool areHeld = true;
  };
  const Row rows[] = {{Var::MeasureContinuous, None, "ni"},
                      {Var::MeasureContinuous, Numbers, "ni"},
                      {Var::MeasureContinuous, Host<0>, "ni", false},
                      {Var::MeasureFrequencyWeight, None, "ni"},
                      {Var::MeasureNumericCategorical, None, "ni"},
                      {Var::MeasureStringCategorical, None, "s"},
                      {Var::MeasureStringCategorical, StringsOnly, "s"},
                      {Var::MeasureStringCategorical, Host<1>, "s", false},
                      {Var::MeasureUnknown, None, "ni", false},
                      {Var::MeasureUnknown, StringsOnly, "ni", false}};
  for (const Row& row : rows) {
    const auto holding = [&] {
      BINVarList list;
      if (row.level == Var::MeasureContinuous) list.AddContVar("x", "", Var::RoleAttribute);
      if (row.level == Var::MeasureFrequencyWeight) list.AddWeightVar("w", "", Var::RoundClosest);
      if (list.Size() == 0) list.AddCatVar("c", "", 2, row.level, Var::RoleAttribute);
      EXPECT_TRUE(list.GetVarAt(0)->SetUserMissingInfo(row.held()));
      return list;
    };
    std::string taken;
    if (holding().AddDiscreteUserMissing(0, 9.0, "nine")) taken += 'n';
    if (holding().AddDiscreteUserMissing(0, "nine", "9")) taken += 's';
    BINVarList list = holding();
    if (list.SetMissingInterval(0, 8, 9)) taken += 'i';
    EXPECT_EQ(taken, row.taken) << "row " << &row - rows;
    const bool isInterval = row.level != Var::MeasureStringCategorical;
    EXPECT_EQ(list.SetMissingInterval(0, 1, 2), isInterval && !row.areHeld)
        << "an interval is set once, row " << &row - rows;
  }
}

TEST(BINVarList, IsValidWithAnAttributeAndCategoriesEverywhere) {
  BINVarList list = FiveVariables();
  Ints one = {99};
  Ints none = {99};
  EXPECT_TRUE(list.IsValidList(one, none));
  EXPECT_EQ(one, Ints());
  EXPECT_EQ(none, Ints());

  list.AddCatVar("none", "", 0, Var::MeasureStringCategorical, Var::RoleUndefined);
  list.AddCatVar("one", "", 1, Var::MeasureStringCategorical, Var::RoleAttribute);
  EXPECT_FALSE(list.IsValidList(one, none));
  EXPECT_EQ(one, (Ints{6}));
  EXPECT_EQ(none, (Ints{5}));

  auto& encoder = dynamic_cast<BINStringEncoder&>(*list.GetEncoderAt(6));
  for (const char* s : {"a", "b", "c"}) encoder.Encode(s);
  EXPECT_FALSE(list.IsValidList(one, none));
  EXPECT_EQ(one, Ints());
  EXPECT_EQ(list.GetVarAt(6)->GetNumberOfCategories(), 3) << "brought up to date";

  BINVarList noAttribute;
  noAttribute.AddCatVar("t", "", {1, 2}, Var::RoleTarget);
  EXPECT_FALSE(noAttribute.IsValidList(one, none));
}

BINCatNumEncoder& SpeciesEncoder(BINVarList& list) {
  return dynamic_cast<BINCatNumEncoder&>(*list.GetEncoderAt(kSpecies));
}

void SetSpeciesCount(BINVarList& list, int count) {
  dynamic_cast<BINCatVar&>(*list.GetVarAt(kSpecies)).SetNumberOfCategories(count);
}

TEST(BINVarList, MergingFindsTheFirstDifferenceFromEitherSide) {
  using L = BINVarList;
  constexpr int kSame = 77;
  struct Row {
    const char* name;
    void (*change)(BINVarList&);
    int where;  // the result of a difference, or kSame
  };
  const Row rows[] = {
      {"Nothing", [](L&) {}, kSame},
      {"Size", [](L& list) { list.RemoveVar(kIncome); }, 4},
      {"Target", [](L& list) { list.SetVariableRole(kSpecies, Var::RoleUndefined); }, -1},
      {"Name",
       [](L& list) {
         list.RemoveVar(kIncome);
         list.AddContVar("Income", "Income", Var::RoleAttribute);
       },
       kIncome},
      {"Label", [](L& list) { list.GetVarAt(kSex)->SetVariableLabel(""); }, kSex},
      {"Role", [](L& list) { list.SetVariableRole(kAge, Var::RoleUndefined); }, kAge},
      {"Level",
       [](L& list) {
         list.RemoveVar(kIncome);
         list.AddCatVar("income", "Income", {1, 2}, Var::RoleAttribute);
       },
       kIncome},
      {"Missing", [](L& list) { list.AddDiscreteUserMissing(kSex, "x", ""); }, kSex},
      {"MissingWeight", [](L& list) { list.SetMissingInterval(kWeight, 1, 2); }, kSame},
      {"UnseenCategory", [](L& list) { SetSpeciesCount(list, 4); }, kSpecies},
      {"UncountedCategory", [](L& list) { SpeciesEncoder(list).Encode(4); }, kSpecies},
      {"SeenCategory",
       [](L& list) {
         SpeciesEncoder(list).Encode(4);
         SetSpeciesCount(list, 4);
       },
       kSame}};
  for (const Row& row : rows) {
    BINVarList list = FiveVariables();
    BINVarList changed = FiveVariables();
    row.change(changed);
    for (int side = 0; side < 2; ++side, std::swap(list, changed)) {
      int where = kSame;
      EXPECT_EQ(list.CanMergeWith(changed, where), row.where == kSame) << row.name;
      EXPECT_EQ(where, row.where) << row.name;
    }
  }
}

TEST(BINVarList, CopiesAreDeep) {
  auto source = std::make_unique<BINVarList>(FiveVariables());
  source->AddDiscreteUserMissing(kSex, "x", "unknown");
  source->AddDiscreteUserMissing(kSpecies, 9.0, "refused");
  source->SetMissingInterval(kWeight, 90, 99);
  const std::string text = DisplayText(*source);
  const BINVarList copy(*source);
  BINVarList assigned;
  assigned.AddContVar("old", "", Var::RoleAttribute);
  assigned = *source;
  const BINVarList& same = assigned;
  assigned = same;
  source.reset();
  for (const BINVarList* list : {&copy, &same}) {
    EXPECT_EQ(DisplayText(*list), text);
    EXPECT_EQ(list->GetWeightIndex(), kWeight);
  }
}

}  // namespace
