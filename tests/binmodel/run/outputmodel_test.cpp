#include "binmodel/run/outputmodel.h"

#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <vector>

#include "algorithm/binfactory.h"
#include "algorithm/efbinfactory.h"
#include "algorithm/ibinalgorithm.h"
#include "algorithm/iefbinalgorithm.h"
#include "binmodel/file/binfile.h"
#include "binmodel/model/refusal.h"
#include "binmodel/run/binrun.h"
#include "binmodel/run/memorycolumns.h"
#include "host/inmemoryrecorditerator.h"

namespace {

using MCBinModel::BinModel;
using MCBinModel::MakeBinModel;

constexpr std::size_t kCount = 60;

// A number with missing values, a class by text and a weight, as columns and as records.
class OutputModelTest : public testing::Test {
 protected:
  OutputModelTest() : fColumns(kCount) {
    fVariables.AddCatVar("class", "", std::vector<std::string>{"left", "right", "nowhere"},
                         IBINVariable::RoleTarget);
    fVariables.AddWeightVar("weight", "", IBINVariable::RoundTruncate);
    const int x = fVariables.AddContVar("x", "", IBINVariable::RoleAttribute);
    fVariables.AddDiscreteUserMissing(x, 7.0, "");
    fVariables.SetMissingInterval(x, 20.0, 22.0);
    for (std::size_t i = 0; i < kCount; ++i) {
      fClass.push_back(i < 33 ? 0.0 : 1.0);
      fWeight.push_back(i % 5 == 4 ? 0.5 : 1.75 + static_cast<double>(i % 3));
      fX.push_back(static_cast<double>(i));
      fRecords.Add({fClass[i], fWeight[i], fX[i]});
    }

    MCBinModel::VariableInfo attribute;
    attribute.name = "x";
    attribute.missing.numbers = {7.0};
    attribute.missing.interval = {20.0, 22.0};
    fRun.attributes = {attribute};
    MCBinModel::VariableInfo target;
    target.name = "class";
    target.kind = MCBinModel::VariableKind::kStringCategorical;
    target.texts = {"left", "right", "nowhere"};
    fRun.targets = {target};
    fRun.targetColumns = {fColumns.Add(View(fClass))};
    fRun.weight = {{"weight", IBINVariable::RoundTruncate, {}}, fColumns.Add(View(fWeight))};
    fRun.attributeColumns = {fColumns.Add(View(fX))};
  }

  static MCBinModel::ColumnView<double> View(const std::vector<double>& values) {
    return {.values = values.data()};
  }

  // The bin file, but for what only who reads the records knows.
  static std::string FileOf(BinModel model) {
    model.source.recordCount = 0;
    model.source.dropped = {};
    return MCBinModel::WriteBinFile(model);
  }

  BINVarList fVariables;
  MCCommon::InMemoryRecordIterator fRecords;
  std::vector<double> fClass, fWeight, fX;
  MCBinModel::MemoryColumns fColumns;
  MCBinModel::RunVariables fRun;
};

TEST_F(OutputModelTest, AHostsSupervisedRunGivesTheBinFileOfARunOfTheLibraryOfBins) {
  BINSettings settings;
  settings.SetNumberOfBins(8);
  settings.SetNumDistinctValueThreshold(10);
  settings.SetRightBorderClosed(false);
  settings.SetSmallBinDetectionThreshold(0.25);
  BINFactory factory;
  const std::unique_ptr<IBINAlgorithm> binning(factory.CreateBINAlgorithm(settings, fVariables));
  ASSERT_FALSE(binning->CreateBins(fRecords, nullptr, nullptr).IsError());
  const BinModel model = MakeBinModel(*binning);

  MCBinModel::BinSettings asked;
  asked.rightClosed = false;
  asked.prebinAbove = 10;
  asked.prebins = 8;
  asked.smallBins = 0.25;
  EXPECT_EQ(FileOf(model), FileOf(MCBinModel::MakeBins(asked, fRun, fColumns, {})));
  EXPECT_EQ(model.source.recordCount, kCount);
  EXPECT_EQ(model.source.dropped.roundedToZero, 12U);
  const std::string file = MCBinModel::WriteBinFile(model);
  EXPECT_EQ(MCBinModel::WriteBinFile(MCBinModel::ParseBinFile(file, "host")), file);
}

TEST_F(OutputModelTest, AnEqualFrequencyRunDoesToo) {
  EFBINSettings settings;
  settings.SetNumberOfBins(4);
  EFBINFactory factory;
  const std::unique_ptr<IEFBINAlgorithm> binning(
      factory.CreateEFBINAlgorithm(settings, fVariables));
  const std::vector<int> attributes{2, 9};  // the second is refused
  ASSERT_FALSE(binning->CreateBins(fRecords, &attributes).IsError());

  MCBinModel::BinSettings asked;
  asked.algorithm = MCBinModel::Algorithm::kEqualFrequency;
  asked.bins = 4;
  fRun.targets.clear();
  fRun.targetColumns.clear();
  EXPECT_EQ(FileOf(MakeBinModel(*binning)),
            FileOf(MCBinModel::MakeBins(asked, fRun, fColumns, {})));
}

TEST_F(OutputModelTest, WithoutResultsThereIsNoModel) {
  EXPECT_THROW(MakeBinModel(BINOutput(), BINSettings(), fVariables), MCBinModel::Refusal);
}

}  // namespace
