#include "binmodel/measure/discrimination.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <random>
#include <vector>

#include "binmodel/samplebins.h"

namespace {

using MCBinModel::AttributeBins;
using Weights = std::vector<std::vector<double>>;

struct Case {
  double score;
  std::size_t isEvent;
};

// Every case alone, with its bin's event rate in `ranking` as its score.
std::vector<Case> CasesOf(const Weights& ranking, const Weights& counted) {
  double events = 0.0;
  double total = 0.0;
  for (const auto& bin : ranking) {
    events += bin[1];
    total += bin[0] + bin[1];
  }
  std::vector<Case> cases;
  for (std::size_t bin = 0; bin < ranking.size(); ++bin) {
    const double weight = ranking[bin][0] + ranking[bin][1];
    const double score = weight > 0.0 ? ranking[bin][1] / weight : events / total;
    for (const std::size_t isEvent : {0u, 1u}) {
      cases.insert(cases.end(), static_cast<std::size_t>(counted[bin][isEvent]), {score, isEvent});
    }
  }
  return cases;
}

// The share of pairs of an event and another case in which the event has the higher score.
double PairsWon(const std::vector<Case>& cases) {
  double won = 0.0;
  double pairs = 0.0;
  for (const Case& event : cases) {
    for (const Case& other : cases) {
      if (event.isEvent == 0 || other.isEvent == 1) continue;
      pairs += 1.0;
      won += event.score > other.score ? 1.0 : event.score == other.score ? 0.5 : 0.0;
    }
  }
  return won / pairs;
}

double LargestDistance(const std::vector<Case>& cases) {
  double largest = 0.0;
  for (const Case& threshold : cases) {
    double below[2] = {0.0, 0.0};
    double all[2] = {0.0, 0.0};
    for (const Case& other : cases) {
      all[other.isEvent] += 1.0;
      if (other.score <= threshold.score) below[other.isEvent] += 1.0;
    }
    largest = std::max(largest, std::abs(below[0] / all[0] - below[1] / all[1]));
  }
  return largest;
}

AttributeBins BinsOf(Weights weights, bool withMissing) {
  const std::vector<double> last = weights.back();
  if (withMissing) weights.pop_back();
  AttributeBins bins = SampleBins({"n", "y"}, {{"x", weights}}).results[0];
  if (withMissing) bins.missing = {last[0] + last[1], last};
  return bins;
}

TEST(Discrimination, IsThatOfTheCasesOneByOne) {
  std::mt19937 random(20250301u);
  int measured = 0;
  for (int round = 0; round < 400 && !HasFailure(); ++round) {
    Weights ranking(2 + random() % 4);
    Weights counted(ranking.size());
    for (Weights* weights : {&ranking, &counted}) {
      for (auto& bin : *weights) bin = {double(random() % 4), double(random() % 4)};
    }
    if (round % 2 == 0) counted = ranking;
    const bool withMissing = random() % 2 == 0;
    const auto found =
        MeasureDiscrimination(BinsOf(ranking, withMissing), BinsOf(counted, withMissing), 1);
    const std::vector<Case> cases = CasesOf(ranking, counted);
    const auto events =
        std::count_if(cases.begin(), cases.end(), [](const Case& one) { return one.isEvent == 1; });
    const bool exists = events > 0 && static_cast<std::size_t>(events) < cases.size();
    ASSERT_EQ(found.has_value(), exists);
    if (!exists || std::isnan(cases[0].score)) continue;
    ++measured;
    EXPECT_NEAR(found->areaUnderCurve, PairsWon(cases), 1e-12);
    EXPECT_NEAR(found->kolmogorovSmirnov, LargestDistance(cases), 1e-12);
    EXPECT_NEAR(found->GetGini(), 2.0 * found->areaUnderCurve - 1.0, 1e-12);
  }
  EXPECT_GT(measured, 200);
}

}  // namespace
