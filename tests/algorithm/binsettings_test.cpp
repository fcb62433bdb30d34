#include "algorithm/binsettings.h"

#include <gtest/gtest.h>

#include <cmath>
#include <functional>

#include "algorithm/efbinsettings.h"
#include "algorithm/settingsrules.h"
#include "support/hostdoubles.h"

namespace {

// What the settings of both algorithms promise alike.
template <class Settings>
class BothSettings : public testing::Test {};

using SettingsTypes = testing::Types<BINSettings, EFBINSettings>;
TYPED_TEST_SUITE(BothSettings, SettingsTypes);

TYPED_TEST(BothSettings, RefuseValuesOutOfRangeAndKeepTheOldOnes) {
  TypeParam settings;
  EXPECT_FALSE(settings.SetNumberOfBins(1) || settings.SetNumberOfBins(-5));
  EXPECT_EQ(settings.GetNumberOfBins(), -1) << "no usable default";
  EXPECT_TRUE(settings.SetNumberOfBins(2));
  EXPECT_FALSE(settings.SetNumberOfBins(0));
  EXPECT_EQ(settings.GetNumberOfBins(), 2);
  EXPECT_FALSE(settings.SetNSkippedAttReports(-1) || settings.SetNSkippedCasesReports(-1));
  EXPECT_EQ(settings.GetNSkippedAttReports(), 0);
  EXPECT_EQ(settings.GetNSkippedCasesReports(), 100000);
  EXPECT_TRUE(settings.SetNSkippedAttReports(0) && settings.SetNSkippedCasesReports(0));
  EXPECT_TRUE(settings.IsRightBorderClosed());
  EXPECT_FALSE(settings.SetRightBorderClosed(false)) << "the flag, not whether it was accepted";
  EXPECT_TRUE(settings.SetRightBorderClosed(true));
}

TYPED_TEST(BothSettings, CompareWhatShapesTheBins) {
  using Change = std::function<void(TypeParam&)>;
  for (const Change& change : {Change([](TypeParam& s) { s.SetNSkippedAttReports(1); }),
                               Change([](TypeParam& s) { s.SetNSkippedCasesReports(1); }),
                               Change([](TypeParam& s) { s.SetRightBorderClosed(false); }),
                               Change([](TypeParam& s) { s.SetNumberOfBins(9); })}) {
    TypeParam changed;
    change(changed);
    EXPECT_FALSE(changed == TypeParam());
    EXPECT_TRUE(changed == TypeParam(changed));
  }
  TypeParam sameBins;
  RecordingListener listener;
  CountingCancel query;
  sameBins.SetProgressListener(&listener);
  sameBins.SetCancelPointer(&query);
  sameBins.SetTempDirName("elsewhere");
  EXPECT_TRUE(sameBins == TypeParam());
}

TEST(BINSettings, ChecksAndComparesItsThresholds) {
  BINSettings settings;
  EXPECT_FALSE(settings.SetNumDistinctValueThreshold(-1));
  EXPECT_TRUE(settings == BINSettings());
  EXPECT_TRUE(settings.SetNumDistinctValueThreshold(0));
  EXPECT_FALSE(settings == BINSettings());
  BINSettings merging;
  EXPECT_TRUE(merging.SetSmallBinDetectionThreshold(1.0));
  for (const double refused : {1.0000001, -0.0001, std::nan(""), HUGE_VAL}) {
    EXPECT_FALSE(merging.SetSmallBinDetectionThreshold(refused)) << refused;
  }
  EXPECT_EQ(merging.GetSmallBinDetectionThreshold(), 1.0);
  EXPECT_TRUE(merging == BINSettings()) << "not compared";
  EXPECT_TRUE(merging.SetSmallBinDetectionThreshold(0.0));
}

TEST(SettingsRules, DirectoryOfTempNameEndsBeforeTheLastSlash) {
  EXPECT_EQ(MCBinning::DirectoryOfTempName("/var/tmp/abc"), "/var/tmp");
  EXPECT_EQ(MCBinning::DirectoryOfTempName("a/b"), "a");
  EXPECT_EQ(MCBinning::DirectoryOfTempName("/tmpfile"), "./");
  EXPECT_EQ(MCBinning::DirectoryOfTempName("tmpfile"), "./");
  EXPECT_EQ(BINSettings().GetTempDirName(), P_tmpdir);
  EXPECT_EQ(EFBINSettings().GetTempDirName(), P_tmpdir);
}

}  // namespace
