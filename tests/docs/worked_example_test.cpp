// The ten cases that docs/method.md works out by hand, with the numbers as they stand there.

#include <gtest/gtest.h>

#include <memory>
#include <vector>

#include "algorithm/binfactory.h"
#include "algorithm/binsettings.h"
#include "algorithm/efbinfactory.h"
#include "algorithm/efbinsettings.h"
#include "algorithm/ibinalgorithm.h"
#include "algorithm/iefbinalgorithm.h"
#include "host/inmemoryrecorditerator.h"
#include "metadata/binvarlist.h"
#include "output/binoutput.h"
#include "output/efbinoutput.h"
#include "support/tempdir.h"

namespace {

using Numbers = std::vector<double>;
using Bins = std::vector<Numbers>;

constexpr int kX = 0;
constexpr int kClass = 1;

class WorkedExample : public testing::Test {
 protected:
  static BINVarList VarList() {
    BINVarList list;
    list.AddContVar("x", "", IBINVariable::RoleAttribute);
    list.AddCatVar("class", "", 2, IBINVariable::MeasureNumericCategorical,
                   IBINVariable::RoleTarget);
    list.AddWeightVar("weight", "", IBINVariable::RoundClosest);
    return list;
  }

  static MCCommon::InMemoryRecordIterator Records(double weight) {
    const Numbers x{1, 2, 2, 3, 4, 5, 5, 6, 7, 8};
    const Numbers classes{0, 0, 0, 0, 1, 0, 1, 1, 1, 1};
    MCCommon::InMemoryRecordIterator records;
    for (std::size_t i = 0; i < x.size(); ++i) records.Add({x[i], classes[i], weight});
    return records;
  }

  BINAttributeTargetResults BinSupervised(double weight, bool rightBorderClosed = true) {
    BINSettings settings;
    settings.SetNumberOfBins(4);
    settings.SetTempDirName(directory.Path());
    settings.SetRightBorderClosed(rightBorderClosed);
    BINVarList list = VarList();
    BINFactory factory;
    const std::unique_ptr<IBINAlgorithm> algorithm(factory.CreateBINAlgorithm(settings, list));
    MCCommon::InMemoryRecordIterator records = Records(weight);
    algorithm->CreateBins(records, nullptr, nullptr);
    BINAttributeTargetResults results;
    algorithm->GetBinningResults().GetAttributeTargetCutPoints(kX, kClass, results);
    return results;
  }

  BINAttributeResults BinEqualFrequency(bool rightBorderClosed) {
    EFBINSettings settings;
    settings.SetNumberOfBins(4);
    settings.SetTempDirName(directory.Path());
    settings.SetRightBorderClosed(rightBorderClosed);
    BINVarList list = VarList();
    EFBINFactory factory;
    const std::unique_ptr<IEFBINAlgorithm> algorithm(factory.CreateEFBINAlgorithm(settings, list));
    MCCommon::InMemoryRecordIterator records = Records(1.0);
    algorithm->CreateBins(records, nullptr);
    BINAttributeResults results;
    algorithm->GetBinningResults().GetAttributeCutPoints(kX, results);
    return results;
  }

  TempDir directory;
};

TEST_F(WorkedExample, TenCasesAreTooFewForTheBestSplit) {
  const BINAttributeTargetResults results = BinSupervised(1.0);
  EXPECT_EQ(results.GetStatus().GetErrorCode(), 120017);
  EXPECT_EQ(results.GetCellCounts(), (Bins{{10, 5, 5}}));
  EXPECT_EQ(results.GetNDistinctValues(), 8u);
  EXPECT_EQ(results.GetModelEntropy(), 1.0);
}

TEST_F(WorkedExample, TwiceTheWeightBuysOneCut) {
  const BINAttributeTargetResults results = BinSupervised(2.0);
  EXPECT_TRUE(results.GetStatus().IsOK());
  EXPECT_EQ(results.GetCutPoints(), Numbers{3});
  EXPECT_EQ(results.GetCellCounts(), (Bins{{8, 8, 0}, {12, 2, 10}}));
  EXPECT_NEAR(results.GetModelEntropy(), 0.39001, 0.000005);
  EXPECT_EQ(BinSupervised(2.0, false).GetCutPoints(), Numbers{4});
}

TEST_F(WorkedExample, QuartersMeetTiesAndAnExactHit) {
  const BINAttributeResults closed = BinEqualFrequency(true);
  EXPECT_EQ(closed.GetCutPoints(), (Numbers{2, 4.5, 6}));
  EXPECT_EQ(closed.GetCellCounts(), (Numbers{3, 2, 3, 2}));
  const BINAttributeResults open = BinEqualFrequency(false);
  EXPECT_EQ(open.GetCutPoints(), (Numbers{2, 4.5, 6}));
  EXPECT_EQ(open.GetCellCounts(), (Numbers{1, 4, 2, 3}));
}

}  // namespace
