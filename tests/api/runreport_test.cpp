#include "algorithm/runreport.h"

#include <gtest/gtest.h>

#include <cerrno>
#include <cmath>
#include <limits>
#include <memory>
#include <stdexcept>
#include <string>
#include <utility>
#include <vector>

#include "algorithm/binfactory.h"
#include "algorithm/binsettings.h"
#include "algorithm/efbinfactory.h"
#include "algorithm/efbinsettings.h"
#include "algorithm/ibinalgorithm.h"
#include "algorithm/iefbinalgorithm.h"
#include "common/missing.h"
#include "common/progresslistener.h"
#include "metadata/binvarlist.h"
#include "metadata/describe.h"
#include "support/filesizelimit.h"
#include "support/hostdoubles.h"
#include "support/tempdir.h"

namespace {

using MCBinning::MCStatus;
using MCBinning::RunPhase;
using MCBinning::RunReport;

// x, a target with two categories, another categorical variable and a weight.
class RunReportTest : public testing::Test {
 protected:
  RunReportTest() {
    fVariables.AddContVar("x", "", IBINVariable::RoleAttribute);
    fVariables.AddCatVar("class", "", 2, IBINVariable::MeasureNumericCategorical,
                         IBINVariable::RoleTarget);
    fVariables.AddCatVar("colour", "", 3, IBINVariable::MeasureNumericCategorical,
                         IBINVariable::RoleAttribute);
    fVariables.AddWeightVar("weight", "", IBINVariable::RoundClosest);
    fSettings.SetNumberOfBins(10);
    fSettings.SetTempDirName(fDirectory.Path());
  }

  const RunReport& Run(RowIterator rows) {
    BINFactory factory;
    fBinning.reset(factory.CreateBINAlgorithm(fSettings, fVariables));
    fStatus = fBinning->CreateBins(rows, nullptr, nullptr);
    return MCBinning::GetRunReport(*fBinning);
  }

  TempDir fDirectory;
  BINVarList fVariables;
  BINSettings fSettings;
  std::unique_ptr<IBINAlgorithm> fBinning;
  MCStatus fStatus;
};

TEST_F(RunReportTest, CountsWhatBecameOfTheRecords) {
  const double missing = MCMV::Missing();
  const double nan = std::numeric_limits<double>::quiet_NaN();
  fVariables.AddDiscreteUserMissing(3, 99.0, "");
  const RunReport& report = Run(RowIterator({{1, 0, 0, 1},
                                             {},
                                             {2, 1, 1, 2},
                                             {3, 1, 1, missing},
                                             {4, 1, 1, 99},
                                             {5, 1, 1, 0.25},
                                             {6, 1, 1, -1},
                                             {7, 0, 2, nan}}));
  EXPECT_EQ(report.phase, RunPhase::kFinished);
  EXPECT_EQ(report.recordsRead, 8U);
  EXPECT_EQ(report.recordsStored, 3U);
  EXPECT_EQ(report.nullRecords, 1U);
  EXPECT_EQ(report.missingWeights, 2U);
  EXPECT_EQ(report.weightsRoundedToZero, 2U);
  EXPECT_EQ(report.nanWeights, 1U);
  EXPECT_EQ(report.attributeCount, 2U);
  EXPECT_EQ(report.attributesDone, 2U);
  EXPECT_TRUE(report.refusedCodes.empty());
  EXPECT_FALSE(report.isCancelled || report.isHostException);
}

TEST_F(RunReportTest, NamesTheFirstRecordWithACodeThatItsVariableCannotHave) {
  const RunReport& report = Run(
      RowIterator({{1, 0, 0, 1}, {}, {2, 5, 1, 1}, {3, 7, 1, 1}, {4, 1, 300, 1}, {5, 1, -7, 1}}));
  EXPECT_EQ(fStatus.GetErrorCode(), 120010);
  ASSERT_EQ(report.refusedCodes.size(), 2U);
  EXPECT_EQ(report.refusedCodes[0].variable, 1);
  EXPECT_EQ(report.refusedCodes[0].code, 5.0);
  EXPECT_EQ(report.refusedCodes[0].record, 3U);
  EXPECT_EQ(report.refusedCodes[1].variable, 2);
  EXPECT_EQ(report.refusedCodes[1].code, 300.0);
  EXPECT_EQ(report.refusedCodes[1].record, 5U);
}

TEST_F(RunReportTest, ARecordShorterThanTheListEndsTheRun) {
  const RunReport& report = Run(RowIterator({{1, 0, 0, 1}, {2, 1, 1, 1}, {3, 1}}));
  EXPECT_EQ(fStatus.GetErrorCode(), 120003);
  EXPECT_EQ(fStatus.GetDiscreteDatum(1), 2);
  EXPECT_EQ(report.phase, RunPhase::kReading);
  EXPECT_EQ(report.shortRecord, 3U);
}

TEST_F(RunReportTest, TellsAnExceptionOfTheHostFromACancellation) {
  {
    RowIterator torn({{1, 0, 0, 1}});
    torn.onNext = [] { throw std::runtime_error("the tape is torn"); };
    const RunReport& report = Run(std::move(torn));
    EXPECT_EQ(fStatus.GetErrorCode(), 1);
    EXPECT_TRUE(report.isHostException);
    EXPECT_FALSE(report.isCancelled);
    EXPECT_EQ(report.exceptionText, "the tape is torn");
    EXPECT_EQ(report.phase, RunPhase::kReading);
  }
  RowIterator rows({{1, 0, 0, 1}, {2, 1, 0, 1}});
  EXPECT_FALSE(fBinning->CreateBins(rows, nullptr, nullptr).IsError());
  EXPECT_FALSE(MCBinning::GetRunReport(*fBinning).isHostException);
  fBinning->Cancel();
  EXPECT_EQ(fBinning->CreateBins(rows, nullptr, nullptr).GetErrorCode(), 1);
  EXPECT_TRUE(MCBinning::GetRunReport(*fBinning).isCancelled);
  EXPECT_EQ(MCBinning::GetRunReport(*fBinning).recordsStored, 2U);
}

// A short pass notices a full disk at its end.
TEST_F(RunReportTest, KeepsTheFirstErrorWhenAFileThatCouldNotBeWrittenIsRead) {
  const std::vector<std::vector<double>> rows(100, {1, 0, 0, 1});
  const FileSizeLimit disk(1);
  const RunReport& report = Run(RowIterator(rows));
  EXPECT_EQ(fStatus.GetErrorCode(), 120018);
  EXPECT_EQ(report.systemError, EFBIG);
}

TEST_F(RunReportTest, ARefusedCodeIsNoFailureOfAFile) {
  EXPECT_EQ(Run(RowIterator({{1, 0, 0, 1}, {2, 256, 1, 1}})).tempFile, "");
  EXPECT_EQ(fStatus.GetErrorCode(), 120010);
}

// A listener that asks for the phase need not guess what the index counts.
TEST(RunReport, AListenerSeesThePhaseAndHowManyAttributesAreDone) {
  struct Phases : ProgressListener {
    void ReportProgress(ProgressReport&) override {
      const RunReport& report = MCBinning::GetRunReport(*binning);
      const char* const phase = report.phase == RunPhase::kReading ? "reading " : "binning ";
      seen += phase +
              std::to_string(report.phase == RunPhase::kReading ? report.recordsRead
                                                                : report.attributesDone) +
              "/" + std::to_string(report.attributeCount) + " ";
    }
    const IEFBINAlgorithm* binning = nullptr;
    std::string seen;
  } phases;
  BINVarList variables;
  variables.AddContVar("x", "", IBINVariable::RoleAttribute);
  variables.AddContVar("y", "", IBINVariable::RoleAttribute);
  EFBINSettings settings;
  settings.SetNumberOfBins(2);
  settings.SetNSkippedCasesReports(2);
  EFBINFactory factory;
  const std::unique_ptr<IEFBINAlgorithm> binning(factory.CreateEFBINAlgorithm(settings, variables));
  phases.binning = binning.get();
  binning->SetProgressListener(&phases);
  RowIterator rows({{1, 2}, {2, 3}, {3, 4}, {4, 5}});
  EXPECT_FALSE(binning->CreateBins(rows, nullptr).IsError());
  EXPECT_EQ(phases.seen, "reading 2/0 reading 4/0 binning 1/2 binning 2/2 ");
  const std::vector<int> list{1, 9, 0};
  EXPECT_FALSE(binning->CreateBins(rows, &list).IsError());
  EXPECT_EQ(MCBinning::GetRunReport(*binning).attributeCount, 2U);
}

TEST(BINVarListRoles, TheVariableThatWouldShareAFileIsFoundBeforehand) {
  BINVarList variables;
  variables.AddContVar("x", "", IBINVariable::RoleAttribute);
  EXPECT_EQ(variables.FindRoleConflict(), -1);
  const auto addTarget = [&](const char* name) {
    return variables.AddCatVar(name, "", 2, IBINVariable::MeasureNumericCategorical,
                               IBINVariable::RoleTarget);
  };
  const int first = addTarget("class");
  EXPECT_EQ(variables.FindRoleConflict(), -1);
  addTarget("colour");  // the list's target from now on
  EXPECT_EQ(variables.FindRoleConflict(), first);
  variables.SetVariableRole(0, IBINVariable::RoleUndefined);
  EXPECT_EQ(variables.FindRoleConflict(), 0);
}

TEST_F(RunReportTest, AStatusIsDescribedWithItsVariableAndWhatToDo) {
  const auto with = [](long code, unsigned int place, long datum) {
    MCStatus status(code, false);
    status.SetDiscreteDatum(place, datum);
    return status;
  };
  EXPECT_EQ(MCBinning::Describe(MCStatus(), fVariables), "ok");
  EXPECT_EQ(MCBinning::Describe(MCStatus(5, false), fVariables), "unknown status");
  EXPECT_EQ(MCBinning::Describe(MCStatus(120017, true), fVariables),
            "no cut point separates the classes");
  EXPECT_EQ(MCBinning::Describe(with(120014, 0, 2), fVariables),
            "a single distinct value (variable \"colour\"): leave the attribute out");
  for (const auto& [status, name] : {std::pair(with(120003, 1, 1), "class"),
                                     {with(120010, 0, 0), "class"},
                                     {with(120012, 0, 3), "colour"},
                                     {with(120012, 0, 0), "class"},
                                     {with(120016, 0, 1), "class"},
                                     {with(120012, 0, 2), "x"},
                                     {with(120012, 0, 1), "weight"}}) {
    const std::string text = MCBinning::Describe(status, fVariables);
    EXPECT_NE(text.find(std::string(" (variable \"") + name + "\"): "), text.npos) << text;
  }
}

}  // namespace
