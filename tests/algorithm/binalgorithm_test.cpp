#include "algorithm/binalgorithm.h"

#include <gtest/gtest.h>

#include <cmath>

#include "algorithm/efbinalgorithm.h"
#include "support/agreement.h"
#include "support/displaytext.h"
#include "support/rowname.h"
#include "support/scenario.h"
#include "support/tempdir.h"

namespace {

using Doubles = std::vector<double>;
using Cuts = std::set<double>;

const Doubles kTwoBoundaries{10, 20};

// An algorithm that has run the cases 1 .. 8, class 0 up to 4 and class 1 above.
class Partitioning : public testing::Test {
 protected:
  void Run(bool rightBorderClosed, double smallBinThreshold = 0.0) {
    Scenario scenario;
    scenario.Append(Continuous({1, 2, 3, 4, 5, 6, 7, 8}));
    scenario.Append(Categorical({0, 0, 0, 0, 1, 1, 1, 1}, 2, IBINVariable::RoleTarget));
    BINSettings settings;
    settings.SetNumberOfBins(4);
    settings.SetTempDirName(directory.Path());
    settings.SetRightBorderClosed(rightBorderClosed);
    settings.SetSmallBinDetectionThreshold(smallBinThreshold);
    BINVarList list = scenario.VarList();
    algorithm = std::make_unique<BINAlgorithm>(settings, list);
    MCCommon::InMemoryRecordIterator records = scenario.Records();
    ASSERT_TRUE(algorithm->CreateBins(records, nullptr, nullptr).IsOK());
  }

  TempDir directory;
  std::unique_ptr<BINAlgorithm> algorithm;
};

struct SplitExample {
  const char* name;
  bool rightBorderClosed;
  Doubles table;  // two classes a row
  int first;
  int best;
  Doubles left;
  Doubles right;
};

void PrintTo(const SplitExample& example, std::ostream* os) { *os << example.name; }

class BestSplit : public Partitioning, public testing::WithParamInterface<SplitExample> {};

TEST_P(BestSplit, IsThisRow) {
  Run(GetParam().rightBorderClosed);
  const Doubles& table = GetParam().table;
  const int last = static_cast<int>(table.size() / 2) - 1;
  Doubles left(3);
  Doubles right(3);
  for (std::size_t i = static_cast<std::size_t>(GetParam().first) * 2; i < table.size(); ++i) {
    right[0] += table[i];
    right[1 + i % 2] += table[i];
  }
  EXPECT_EQ(algorithm->FindBestCutPoint(&table, GetParam().first, last, &left, &right),
            GetParam().best);
  EXPECT_EQ(left, GetParam().left);
  EXPECT_EQ(right, GetParam().right);
}

const SplitExample kSplits[] = {
    {"LowerRowOfATieClosed", true, {4, 0, 0, 4, 4, 0}, 0, 0, {4, 4, 0}, {8, 4, 4}},
    {"LowerRowOfATieOpen", false, {4, 0, 0, 4, 4, 0}, 0, 1, {4, 4, 0}, {8, 4, 4}},
    {"RowsOfOneClassStayTogether", true, {4, 0, 4, 0, 0, 4}, 0, 1, {8, 8, 0}, {4, 0, 4}},
    {"RowsOfOneClassStayTogetherOpen", false, {4, 0, 4, 0, 0, 4}, 0, 2, {8, 8, 0}, {4, 0, 4}},
    {"EmptyRowIsABoundary", true, {4, 0, 0, 0, 4, 0}, 0, 0, {4, 4, 0}, {4, 4, 0}},
    {"RowsBelowTheFirstDoNotCount", true, {0, 9, 4, 0, 0, 4, 0, 4}, 1, 1, {4, 4, 0}, {8, 0, 8}},
    {"NoBoundaryGivesRowZero", true, {4, 0, 4, 0, 4, 0}, 1, 0, {0, 0, 0}, {8, 8, 0}},
};

INSTANTIATE_TEST_SUITE_P(Examples, BestSplit, testing::ValuesIn(kSplits), RowName);

// log2(N - 1) of the total weight N, which has no special case for small N.
TEST_F(Partitioning, PricesAPositionByTheWeight) {
  const std::pair<Doubles, bool> examples[] = {
      {{3, 1, 1, 3}, false},
      {{1, 0, 0, 1}, true},  // 8, and 2: no price
      {{.25, .25, .25, .25}, true},
      {{.25, 0, 0, .25}, false},  // 1: below any gain; 0.5: NaN
  };
  for (const bool closed : {true, false}) {
    Run(closed);
    for (const auto& [table, isCut] : examples) {
      Cuts cuts;
      EXPECT_TRUE(algorithm->MDLPCut(&kTwoBoundaries, &table, 0, 1, cuts).IsOK());
      EXPECT_EQ(!cuts.empty(), isCut) << table[0];
    }
  }
}

TEST_F(Partitioning, NeedsABoundaryPerRow) {
  Run(true);
  const Doubles three{1, 0, 0, 1, 1, 0};
  Cuts cuts;
  const std::string misfit = "120002/-1[0 0 0]";
  EXPECT_EQ(Text(algorithm->MDLPCut(&kTwoBoundaries, &three, 0, 1, cuts)), misfit);
  EXPECT_EQ(Text(algorithm->MDLPCut(nullptr, &three, 0, 1, cuts)), misfit);
  EXPECT_EQ(Text(algorithm->MDLPCut(&kTwoBoundaries, nullptr, 0, 1, cuts)), misfit);
}

TEST_F(Partitioning, RemovesTheCandidateThatSeparatesNothing) {
  std::vector<BINDataTuple> tuples;
  for (const int value : {1, 2, 3, 4, 5, 6, 7, 8}) {
    tuples.push_back({static_cast<double>(value), static_cast<std::uint8_t>(value > 4), 1});
  }
  struct Row {
    bool closed;
    Doubles candidates, left;
    Cuts cuts;
  };
  const Row rows[] = {
      {true, {4, 8}, {4}, {4}},     {true, {1, 4}, {1, 4}, {4}}, {false, {1, 5}, {5}, {5}},
      {false, {5, 8}, {5, 8}, {5}}, {true, {}, {}, {}},
  };
  for (const Row& row : rows) {
    Run(row.closed);
    Doubles candidates = row.candidates;
    Cuts cuts;
    Doubles counts;
    double modelEntropy = -1;
    EXPECT_EQ(Text(algorithm->MDLP(&tuples, candidates, cuts, counts, modelEntropy)),
              row.cuts.empty() ? "120017/1[0 0 0]" : "0/0[0 0 0]");
    EXPECT_EQ(candidates, row.left);
    EXPECT_EQ(cuts, row.cuts);
    EXPECT_EQ(counts, row.cuts.empty() ? Doubles({8, 4, 4}) : Doubles({4, 4, 0, 4, 0, 4}));
    EXPECT_EQ(modelEntropy, row.cuts.empty() ? 1.0 : 0.0);
  }
}

TEST(BINAlgorithm, CannotPartitionBeforeARun) {
  BINSettings settings;
  BINVarList list;
  const std::vector<BINDataTuple> tuples(1);
  Cuts cuts;
  Doubles counts;
  double modelEntropy = -1;
  EXPECT_EQ(Text(BINAlgorithm(settings, list).MDLP(&tuples, cuts, counts, modelEntropy)),
            "120002/-1[0 0 0]");
  EXPECT_EQ(modelEntropy, -1);
}

struct MergeExample {
  const char* name;
  double threshold;
  Doubles counts;  // total, class 0, class 1 of every bin; the cuts are 1, 2, ...
  Cuts mergedCuts;
  Doubles mergedCounts;
};

void PrintTo(const MergeExample& example, std::ostream* os) { *os << example.name; }

class SmallBins : public Partitioning, public testing::WithParamInterface<MergeExample> {};

TEST_P(SmallBins, AreMerged) {
  Run(true, GetParam().threshold);
  Doubles counts = GetParam().counts;
  Cuts cuts;
  for (std::size_t bin = 1; bin < counts.size() / 3; ++bin) cuts.insert(static_cast<double>(bin));
  algorithm->ProcessLittleBins(&counts, cuts);
  EXPECT_EQ(cuts, GetParam().mergedCuts);
  EXPECT_EQ(counts, GetParam().mergedCounts);
}

const Doubles kLightNeighbour = {4, 4, 0, 3, 3, 0, 90, 0, 90};
const Doubles kAtTheShare = {10, 10, 0, 5, 5, 0, 10, 0, 10};
const Doubles kSmallOuterBins = {1, 1, 0, 9, 0, 9, 1, 1, 0};
const Doubles kSmallByDifferentSides = {10, 10, 0, 1, 0, 1, 10, 0, 10, 1, 0, 1, 10, 10, 0};
const Doubles kSmallBySameSide = {10, 10, 0, 1, 1, 0, 10, 0, 10, 1, 1, 0, 10, 10, 0};

const MergeExample kMerges[] = {
    {"IntoTheLeft", .5, {10, 10, 0, 1, 1, 0, 10, 0, 10}, {2}, {11, 11, 0, 10, 0, 10}},
    {"IntoTheRight", .5, {10, 10, 0, 1, 0, 1, 10, 0, 10}, {1}, {10, 10, 0, 11, 0, 11}},
    {"TieGoesLeft", .5, {10, 10, 0, 2, 1, 1, 10, 0, 10}, {2}, {12, 11, 1, 10, 0, 10}},
    {"ExactlyTheShareStays", .5, kAtTheShare, {1, 2}, kAtTheShare},
    {"ShareOfTheLighterNeighbour", .5, kLightNeighbour, {1, 2}, kLightNeighbour},
    {"OuterBinsStay", 1, kSmallOuterBins, {1, 2}, kSmallOuterBins},
    {"TwoIntoOne", .5, kSmallByDifferentSides, {1, 4}, {10, 10, 0, 12, 0, 12, 10, 10, 0}},
    {"LaterMergesMove", .5, kSmallBySameSide, {2, 3}, {11, 11, 0, 10, 0, 10, 11, 11, 0}},
};

INSTANTIATE_TEST_SUITE_P(Examples, SmallBins, testing::ValuesIn(kMerges), RowName);

TEST_F(Partitioning, DisplaysFrameAndParts) {
  Run(true);
  const std::string text = DisplayText(*algorithm);
  EXPECT_EQ(text.rfind("\nStart of BINAlgorithm display\n", 0), 0u);
  EXPECT_TRUE(text.ends_with("\nEnd of BINAlgorithm display\n"));
  for (const char* const part : {"BINSettings", "BINDataPreparator", "BINDataSet", "BINOutput"}) {
    EXPECT_NE(text.find("\nEnd of " + std::string(part) + " display\n"), std::string::npos) << part;
  }
  EFBINSettings settings;
  BINVarList list;
  const std::string unused = DisplayText(EFBINAlgorithm(settings, list));
  EXPECT_EQ(unused.rfind("\nStart of EFBINAlgorithm display\n", 0), 0u);
  EXPECT_TRUE(unused.ends_with("\nEnd of EFBINAlgorithm display\n"));
}

}  // namespace
