// Memory that runs out in a run of the library of bins, in whichever of its threads.

#include <gtest/gtest.h>

#include <new>
#include <optional>
#include <string>
#include <vector>

#include "binmodel/file/binfile.h"
#include "binmodel/model/refusal.h"
#include "binmodel/run/binrun.h"
#include "binmodel/run/memorycolumns.h"
#include "reliability/countedmemory.h"
#include "support/tempdir.h"

namespace {

using counted_memory::Failing;
using counted_memory::Failure;

class RunOverColumns {
 public:
  explicit RunOverColumns(const std::string& directory) {
    fControl.tempDir = directory;
    for (std::size_t i = 0; i < kRecords; ++i) {
      fValues.push_back(static_cast<double>(i * 7919 % 101));
      fClasses.push_back(static_cast<double>(i * 7919 % 101 / 40));
    }
    for (const char* name : {"a", "b", "c", "d"}) {
      fVariables.attributes.emplace_back().name = name;
      fVariables.attributeColumns.push_back(fColumns.Add({.values = fValues.data()}));
    }
    MCBinModel::VariableInfo& target = fVariables.targets.emplace_back();
    target.name = "class";
    target.kind = MCBinModel::VariableKind::kNumericCategorical;
    target.numbers = {0, 1, 2};
    fVariables.targetColumns = {fColumns.Add({.values = fClasses.data()})};
  }

  MCBinModel::BinModel Make(int jobs) {
    fControl.jobs = jobs;
    return MCBinModel::MakeBins({}, fVariables, fColumns, fControl);
  }

 private:
  static constexpr std::size_t kRecords = 500;
  std::vector<double> fValues;
  std::vector<double> fClasses;
  MCBinModel::MemoryColumns fColumns{kRecords};
  MCBinModel::RunVariables fVariables;
  MCBinModel::RunControl fControl;
};

// The model, or nothing when an allocation failed and ended the run; `hasFailed` tells of one.
std::optional<MCBinModel::BinModel> MakeFailing(RunOverColumns& run, int jobs, std::size_t count,
                                                Failure failure, bool& hasFailed) {
  const Failing failing(count, failure);
  std::optional<MCBinModel::BinModel> model;
  try {
    model = run.Make(jobs);
  } catch (const std::bad_alloc&) {
  } catch (const MCBinModel::Refusal&) {
  }
  hasFailed = failing.HasFailed();
  return model;
}

TEST(RunAllocation, FailingInAnyThreadEndsTheRunAndNothingStays) {
  const TempDir directory;
  RunOverColumns run(directory.Path());
  const std::string expected = MCBinModel::WriteBinFile(run.Make(1));
  for (const int jobs : {1, 3}) {
    for (const Failure failure : {Failure::kOnce, Failure::kForGood}) {
      const std::size_t live = counted_memory::Live();
      std::size_t count = 0;
      for (bool hasFailed = true; hasFailed; count += 3) {
        {
          const auto model = MakeFailing(run, jobs, count, failure, hasFailed);
          ASSERT_TRUE(model || hasFailed) << count;
          if (model && !hasFailed) {
            EXPECT_EQ(MCBinModel::WriteBinFile(*model), expected) << count;
          }
        }
        ASSERT_EQ(counted_memory::Live(), live) << count;
        ASSERT_EQ(directory.FileCount(), 0u) << count;
      }
      EXPECT_GT(count, 100u);
    }
    EXPECT_EQ(MCBinModel::WriteBinFile(run.Make(jobs)), expected);
  }
}

}  // namespace
