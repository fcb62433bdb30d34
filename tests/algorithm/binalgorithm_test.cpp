#include "algorithm/binalgorithm.h"

#include <gtest/gtest.h>

#include "support/agreement.h"
#include "support/scenario.h"
#include "support/tempdir.h"

namespace {

using Doubles = std::vector<double>;
using Cuts = std::set<double>;

const Doubles kTwoBoundaries{10, 20};

// An algorithm that has run the cases 1 .. 8, class 0 up to 4 and class 1 above.
class Partitioning : public testing::Test {
 protected:
  void Run(bool rightBorderClosed) {
    Scenario scenario;
    scenario.Append(Continuous({1, 2, 3, 4, 5, 6, 7, 8}));
    scenario.Append(Categorical({0, 0, 0, 0, 1, 1, 1, 1}, 2, IBINVariable::RoleTarget));
    BINSettings settings;
    settings.SetNumberOfBins(4);
    settings.SetTempDirName(directory.Path());
    settings.SetRightBorderClosed(rightBorderClosed);
    BINVarList list = scenario.VarList();
    algorithm = std::make_unique<BINAlgorithm>(settings, list);
    MCCommon::InMemoryRecordIterator records = scenario.Records();
    ASSERT_TRUE(algorithm->CreateBins(records, nullptr, nullptr).IsOK());
  }

  TempDir directory;
  std::unique_ptr<BINAlgorithm> algorithm;
};

// What stands alone of a run's steps does what it does within one.
TEST_F(Partitioning, SplitsATableOfTheCallers) {
  const Doubles tie{4, 0, 0, 4, 4, 0};  // two classes a row: the lower row of equal ones is cut
  for (const bool closed : {true, false}) {
    Run(closed);
    Doubles left(3);
    Doubles right{12, 8, 4};
    EXPECT_EQ(algorithm->FindBestCutPoint(&tie, 0, 2, &left, &right), closed ? 0 : 1);
    EXPECT_EQ(left, (Doubles{4, 4, 0}));
    EXPECT_EQ(right, (Doubles{8, 4, 4}));
    const Doubles separated{4, 0, 0, 4};
    Cuts cuts;
    EXPECT_TRUE(algorithm->MDLPCut(&kTwoBoundaries, &separated, 0, 1, cuts).IsOK());
    EXPECT_EQ(cuts, Cuts{closed ? 10.0 : 20.0});
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
  for (const double value : {1, 2, 3, 4, 5, 6, 7, 8}) tuples.push_back({value, value > 4, 1});
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

}  // namespace
