#include "binmodel/refine/binrefine.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <numeric>
#include <optional>
#include <ostream>
#include <string>
#include <vector>

#include "../samplebins.h"
#include "binmodel/measure/binstatistics.h"
#include "binmodel/model/refusal.h"
#include "support/dice.h"
#include "support/rowname.h"

namespace {

using MCBinModel::AttributeBins;
using MCBinModel::BinModel;
using MCBinModel::RateTrend;
using MCBinModel::RefineObjective;
using MCBinModel::RefineSettings;
using MCBinModel::RefusalCode;
using Rows = std::vector<std::vector<double>>;

// Non-events and events of one joined bin, or other classes; whole numbers.
using Bin = std::vector<std::int64_t>;

std::int64_t WeightOf(const Bin& bin) {
  std::int64_t sum = 0;
  for (const std::int64_t weight : bin) sum += weight;
  return sum;
}

BinModel ModelOf(const Rows& rows, std::size_t classCount) {
  std::vector<std::string> classes;
  for (std::size_t code = 0; code < classCount; ++code)
    classes.push_back(std::string(1, "abc"[code]));
  return SampleBins(classes, {{"x", rows}});
}

// Settings of hundredths, so that shares can be compared in whole numbers.
struct Demands {
  RefineSettings settings;
  std::int64_t sharePercent = 0;
  std::int64_t differencePercent = 0;
};

// Every joining is looked at, and measured in whole numbers where the document says so.
class BruteForce {
 public:
  BruteForce(const Rows& rows, const Demands& demands) : fRows(rows), fDemands(demands) {
    fTotals = Join(0, rows.size());
  }

  // The cut points of the best one.
  std::optional<std::vector<double>> Find() {
    const std::size_t cutCount = fRows.size() - 1;
    std::optional<std::vector<double>> best;
    std::int64_t bestUnits = 0;
    for (std::size_t kept = 0; kept < std::size_t{1} << cutCount; ++kept) {
      std::vector<double> cuts;
      for (std::size_t cut = 0; cut < cutCount; ++cut) {
        if (kept >> cut & 1) cuts.push_back(static_cast<double>(cut + 1));
      }
      const std::vector<Bin> bins = JoinAt(cuts);
      if (!HasTheCuts(cuts) || !IsAllowed(bins)) continue;
      std::int64_t units = 0;
      for (const Bin& bin : bins) units += UnitsOf(bin) - 2;
      const bool isBetter = !best || units > bestUnits ||
                            (units == bestUnits && (cuts.size() < best->size() ||
                                                    (cuts.size() == best->size() && cuts < *best)));
      if (!isBetter) continue;
      best = cuts;
      bestUnits = units;
    }
    return best;
  }

 private:
  Bin Join(std::size_t first, std::size_t end) const {
    Bin bin(fRows[0].size());
    for (std::size_t row = first; row < end; ++row) {
      for (std::size_t code = 0; code < bin.size(); ++code) {
        bin[code] += static_cast<std::int64_t>(fRows[row][code]);
      }
    }
    return bin;
  }

  std::vector<Bin> JoinAt(const std::vector<double>& cuts) const {
    std::vector<Bin> bins;
    std::size_t first = 0;
    for (const double cut : cuts) {
      bins.push_back(Join(first, static_cast<std::size_t>(cut)));
      first = static_cast<std::size_t>(cut);
    }
    bins.push_back(Join(first, fRows.size()));
    return bins;
  }

  bool HasTheCuts(const std::vector<double>& cuts) const {
    const RefineSettings& settings = fDemands.settings;
    const auto kept = settings.keep.find("x");
    if (kept != settings.keep.end() &&
        !std::includes(cuts.begin(), cuts.end(), kept->second.begin(), kept->second.end())) {
      return false;
    }
    const auto given = settings.breaks.find("x");
    return given == settings.breaks.end() || cuts == given->second;
  }

  bool IsAllowed(const std::vector<Bin>& bins) const {
    const RefineSettings& settings = fDemands.settings;
    const auto count = static_cast<int>(bins.size());
    if (count < settings.minBins || (settings.maxBins > 0 && count > settings.maxBins))
      return false;
    for (const Bin& bin : bins) {
      const auto weight = static_cast<double>(WeightOf(bin));
      if (weight < settings.minWeight) return false;
      if (100 * WeightOf(bin) < fDemands.sharePercent * WeightOf(fTotals)) return false;
      if (bin.size() != 2) continue;
      if (static_cast<double>(bin[1]) < settings.minEventWeight) return false;
      if (static_cast<double>(bin[0]) < settings.minNoneventWeight) return false;
      const bool bothNeeded = settings.objective == RefineObjective::kInformationValue;
      if (bothNeeded && (bin[0] == 0 || bin[1] == 0)) return false;
      const bool rateNeeded = settings.trend != RateTrend::kAny || fDemands.differencePercent > 0;
      if (rateNeeded && weight == 0.0) return false;
    }
    return fTotals.size() != 2 || FollowsTrend(bins);
  }

  bool FollowsTrend(const std::vector<Bin>& bins) const {
    const RateTrend trend = fDemands.settings.trend;
    bool rises = true;
    bool falls = true;
    bool isPeak = true;
    bool isValley = true;
    bool hasRisen = false;
    bool hasFallen = false;
    for (std::size_t i = 1; i < bins.size(); ++i) {
      const std::int64_t weights = WeightOf(bins[i - 1]) * WeightOf(bins[i]);
      const std::int64_t step =
          bins[i][1] * WeightOf(bins[i - 1]) - bins[i - 1][1] * WeightOf(bins[i]);
      if (100 * std::abs(step) < fDemands.differencePercent * weights) return false;
      rises = rises && step >= 0;
      falls = falls && step <= 0;
      isPeak = isPeak && !(hasFallen && step > 0);
      isValley = isValley && !(hasRisen && step < 0);
      hasRisen = hasRisen || step > 0;
      hasFallen = hasFallen || step < 0;
    }
    switch (trend) {
      case RateTrend::kAny:
        return true;
      case RateTrend::kIncreasing:
        return rises;
      case RateTrend::kDecreasing:
        return falls;
      case RateTrend::kEither:
        return rises || falls;
      case RateTrend::kPeak:
        return isPeak;
      case RateTrend::kValley:
        return isValley;
    }
    return false;
  }

  // Multiples of 2^-36, in the order of the formulas.
  std::int64_t UnitsOf(const Bin& bin) const {
    const auto share = [&](std::int64_t weight) {
      return static_cast<double>(weight) / static_cast<double>(WeightOf(fTotals));
    };
    const auto xLog2X = [](double x) { return x > 0.0 ? x * std::log2(x) : 0.0; };
    double information = 0.0;
    if (fDemands.settings.objective == RefineObjective::kInformationValue) {
      const double events = static_cast<double>(bin[1]) / static_cast<double>(fTotals[1]);
      const double nonevents = static_cast<double>(bin[0]) / static_cast<double>(fTotals[0]);
      information = (events - nonevents) * std::log(events / nonevents);
    } else {
      for (std::size_t code = 0; bin.size() > 1 && code < bin.size(); ++code) {
        information += xLog2X(share(bin[code]));
      }
      information -= xLog2X(share(WeightOf(bin)));
    }
    return std::llround(information * 0x1p36);
  }

  const Rows& fRows;
  const Demands& fDemands;
  Bin fTotals;
};

// Which demands a table of the kind makes; several of them at random.
struct Kind {
  const char* name;
  std::size_t classCount;
  std::string demands;  // letters, below
  int tables;
};
void PrintTo(const Kind& row, std::ostream* os) { *os << row.name; }

class RefineTest : public testing::TestWithParam<Kind> {
 protected:
  static Rows MakeRows(Dice& dice, std::size_t classCount) {
    const int most = dice.OneOf({2, 5, 40, 3000});
    Rows rows(static_cast<std::size_t>(1 + dice.Roll(dice.OneIn(8) ? 12 : 8)));
    for (std::vector<double>& row : rows) {
      for (std::size_t code = 0; code < std::max<std::size_t>(classCount, 1); ++code) {
        row.push_back(dice.Roll(most + 1));
      }
    }
    rows[0][0] += 1.0;
    return rows;
  }

  static std::vector<double> SomeCuts(Dice& dice, std::size_t binCount) {
    std::vector<double> cuts;
    for (std::size_t cut = 1; cut < binCount; ++cut) {
      if (dice.OneIn(3)) cuts.push_back(static_cast<double>(cut));
    }
    return cuts;
  }

  static void Ask(char letter, const Rows& rows, Dice& dice, Demands& demands) {
    RefineSettings& settings = demands.settings;
    double total = 0.0;
    for (const auto& row : rows) total += std::accumulate(row.begin(), row.end(), 0.0);
    const auto someWeight = [&] { return std::floor(total * dice.Share() / 4.0); };
    switch (letter) {
      case 'M':
        settings.maxBins = 1 + dice.Roll(5);
        break;
      case 'm':
        settings.minBins = 1 + dice.Roll(4);
        break;
      case 's':
        demands.sharePercent = dice.Roll(30);
        settings.minShare = static_cast<double>(demands.sharePercent) / 100.0;
        break;
      case 'w':
        settings.minWeight = someWeight();
        break;
      case 'e':
        settings.minEventWeight = someWeight();
        break;
      case 'n':
        settings.minNoneventWeight = someWeight();
        break;
      case 't':
        settings.trend = dice.OneOf({RateTrend::kIncreasing, RateTrend::kDecreasing,
                                     RateTrend::kEither, RateTrend::kPeak, RateTrend::kValley});
        break;
      case 'd':
        demands.differencePercent = dice.OneOf({1, 5, 10, 25, 50});
        settings.minRateDifference = static_cast<double>(demands.differencePercent) / 100.0;
        break;
      case 'k':
        settings.keep["x"] = SomeCuts(dice, rows.size());
        break;
      case 'b':
        settings.breaks["x"] = SomeCuts(dice, rows.size());
        break;
      case 'v':
        settings.objective = RefineObjective::kInformationValue;
        break;
    }
  }
};

// nullopt when there is no such joining.
std::optional<std::vector<double>> CutsOf(const BinModel& model, const RefineSettings& settings) {
  try {
    return MCBinModel::RefineBins(model, 0, settings).cutPoints;
  } catch (const MCBinModel::Refusal& refusal) {
    EXPECT_EQ(refusal.GetCode(), RefusalCode::kNoSuchBins) << refusal.what();
    EXPECT_NE(refusal.GetDetail(), "");
    return std::nullopt;
  }
}

TEST_P(RefineTest, FindsTheBestOfAllJoinings) {
  const Kind& kind = GetParam();
  int found = 0;
  for (int seed = 0; seed < kind.tables; ++seed) {
    Dice dice(static_cast<std::uint64_t>(seed));
    const Rows rows = MakeRows(dice, kind.classCount);
    Demands demands;
    for (const char letter : kind.demands) {
      if (kind.demands.size() == 1 || dice.OneIn(3)) Ask(letter, rows, dice, demands);
    }
    const auto expected = BruteForce(rows, demands).Find();
    ASSERT_EQ(CutsOf(ModelOf(rows, kind.classCount), demands.settings), expected)
        << "seed " << seed << ", " << MCBinModel::DescribeRefinement(demands.settings);
    found += expected.has_value();
  }
  EXPECT_GT(found, kind.tables / 10);  // of tables and demands that fit
}

INSTANTIATE_TEST_SUITE_P(
    Kinds, RefineTest,
    testing::Values(Kind{"Nothing", 2, "", 100}, Kind{"MaxBins", 2, "M", 200},
                    Kind{"MinBins", 2, "m", 200}, Kind{"MinShare", 2, "s", 200},
                    Kind{"MinWeight", 2, "w", 200}, Kind{"MinEvents", 2, "e", 200},
                    Kind{"MinNonevents", 2, "n", 200}, Kind{"Trend", 2, "t", 500},
                    Kind{"RateDifference", 2, "d", 300}, Kind{"Keep", 2, "k", 200},
                    Kind{"Breaks", 2, "b", 200}, Kind{"InformationValue", 2, "v", 200},
                    Kind{"TrendOfFewBins", 2, "tttMm", 1000},
                    Kind{"Mixtures", 2, "Mmswenttdkv", 3000},
                    Kind{"MixturesWithBreaks", 2, "Mmswentdkbv", 1000},
                    Kind{"ThreeClasses", 3, "Mmswk", 500}, Kind{"NoClasses", 0, "Mmswkb", 500}),
    RowName);

TEST(Refine, SumsWeightsAndMeasuresAnew) {
  BinModel model = ModelOf({{4, 0}, {3, 1}, {0, 0}, {1, 3}, {0, 4}}, 2);
  model.results[0].minimum = -7.0;
  RefineSettings settings;
  settings.maxBins = 3;
  settings.keep["x"] = {3.0};
  const BinModel refined = MCBinModel::RefineModel(model, settings);
  const AttributeBins& bins = refined.results[0];
  EXPECT_EQ(bins.cutPoints, (std::vector<double>{1.0, 3.0}));
  EXPECT_EQ(bins.binWeights, (std::vector<double>{4.0, 4.0, 8.0}));
  EXPECT_EQ(bins.classWeights, (Rows{{4, 0}, {3, 1}, {1, 7}}));
  EXPECT_DOUBLE_EQ(*bins.modelEntropy, MCBinModel::ModelEntropy(bins));
  EXPECT_DOUBLE_EQ(*bins.informationGain, 1.0 - *bins.modelEntropy);
  EXPECT_EQ(bins.minimum, model.results[0].minimum);
  EXPECT_EQ(bins.weightWithMissing, model.results[0].weightWithMissing);
  ASSERT_EQ(refined.refinements.size(), 1u);
  EXPECT_EQ(refined.refinements[0],
            "at most 3 bins, the cut points to be kept, and then the most information gain");
}

struct RefusedSettings {
  const char* name;
  std::size_t classCount;
  RefineSettings settings;
  RefusalCode code;
  const char* reason;
};
void PrintTo(const RefusedSettings& row, std::ostream* os) { *os << row.name; }

class RefusedRefineTest : public testing::TestWithParam<RefusedSettings> {};

TEST_P(RefusedRefineTest, SaysWhatCannotBe) {
  const Rows twoClasses = {{1, 3}, {3, 1}, {3, 1}};
  const Rows others = {{1, 1, 1}, {1, 1, 1}, {5, 0, 1}};
  const Rows none = {{1}, {2}, {3}};
  const std::size_t classCount = GetParam().classCount;
  BinModel model = ModelOf(classCount == 2   ? twoClasses
                           : classCount == 3 ? others
                                             : none,
                           classCount);
  try {
    MCBinModel::RefineModel(model, GetParam().settings);
    FAIL() << "refined";
  } catch (const MCBinModel::Refusal& refusal) {
    EXPECT_EQ(refusal.GetCode(), GetParam().code);
    EXPECT_EQ(refusal.GetReason(), GetParam().reason);
  }
}

RefineSettings SettingsWith(void (*change)(RefineSettings&)) {
  RefineSettings settings;
  change(settings);
  return settings;
}

INSTANTIATE_TEST_SUITE_P(
    Examples, RefusedRefineTest,
    testing::Values(
        RefusedSettings{"TooManyBins", 2, SettingsWith([](RefineSettings& asked) {
                          asked.minBins = 4;
                          asked.maxBins = 9;
                          asked.minShare = 0.01;
                        }),
                        RefusalCode::kNoSuchBins,
                        "the 3 bins of 'x' cannot be joined to have at least 4 bins"},
        RefusedSettings{"WhatContradictsAlone", 2, SettingsWith([](RefineSettings& asked) {
                          asked.minBins = 2;
                          asked.minWeight = 1.0;
                          asked.trend = RateTrend::kIncreasing;
                        }),
                        RefusalCode::kNoSuchBins,
                        "the 3 bins of 'x' cannot be joined to have at least 2 bins and an "
                        "increasing event rate"},
        RefusedSettings{"CutPointBetween", 2, SettingsWith([](RefineSettings& asked) {
                          asked.breaks["x"] = {1.0, 1.25};
                        }),
                        RefusalCode::kNoSuchCutPoint,
                        "'x' has no cut point 1.25; nearest to it are 1 and 2"},
        RefusedSettings{"CutPointAbove", 2,
                        SettingsWith([](RefineSettings& asked) { asked.keep["x"] = {7.0}; }),
                        RefusalCode::kNoSuchCutPoint, "'x' has no cut point 7; nearest to it is 2"},
        RefusedSettings{"OtherAttribute", 2,
                        SettingsWith([](RefineSettings& asked) { asked.keep["y"] = {1.0}; }),
                        RefusalCode::kUnknownAttribute,
                        "there are no bins of an attribute 'y'; did you mean 'x'?"},
        RefusedSettings{"RatesOfThreeClasses", 3, SettingsWith([](RefineSettings& asked) {
                          asked.trend = RateTrend::kEither;
                        }),
                        RefusalCode::kRefineNeedsTwoClasses,
                        "event rates, event weights and information value need a target with two "
                        "classes; 't' has 3"},
        RefusedSettings{"EventsWithoutTarget", 0,
                        SettingsWith([](RefineSettings& asked) { asked.minEventWeight = 1.0; }),
                        RefusalCode::kRefineNeedsTwoClasses,
                        "event rates, event weights and information value need a target with two "
                        "classes; these bins have none"}),
    RowName);

TEST(Refine, TellsOfEveryAttributeAndRefinesNone) {
  const auto refusalOf = [](const BinModel& model, const RefineSettings& settings) {
    try {
      MCBinModel::RefineModel(model, settings);
    } catch (const MCBinModel::Refusal& refusal) {
      return refusal.GetReason();
    }
    return std::string("refined");
  };
  const BinModel model =
      SampleBins({"a", "b"}, {{"x", {{1, 1}}}, {"y", {{3, 1}, {1, 3}}}, {"z", {{2, 1}}}});
  RefineSettings settings;
  settings.minBins = 2;
  EXPECT_EQ(refusalOf(model, settings),
            "the 1 bin of 'x' cannot be joined to have at least 2 bins; "
            "the 1 bin of 'z' cannot be joined to have at least 2 bins");
  settings.attributes = {"y"};
  const BinModel refined = MCBinModel::RefineModel(model, settings);
  EXPECT_EQ(refined.results[1].cutPoints.size(), 1u);
  EXPECT_EQ(refined.refinements.back(),
            "at least 2 bins, and then the most information gain; attributes 'y'");
  settings.keep["x"] = {7.0};
  EXPECT_EQ(refusalOf(model, settings),
            "cut points of 'x' are given, but it is not among the attributes to be refined");

  RefineSettings rising;
  rising.trend = RateTrend::kIncreasing;
  rising.minBins = rising.maxBins = 1;
  EXPECT_EQ(
      MCBinModel::RefineModel(model, rising).refinements.back(),
      "at most 1 bin, an increasing event rate, and then the most information gain; event 'b'");
  EXPECT_EQ(
      refusalOf(SampleBins({"a", "b", "c"}, {{"x", {{1, 1, 1}}}, {"y", {{2, 1, 1}}}}), rising),
      "event rates, event weights and information value need a target with two classes; 't' "
      "has 3");
}

}  // namespace
