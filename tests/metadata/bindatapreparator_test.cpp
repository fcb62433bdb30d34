#include "metadata/bindatapreparator.h"

#include <gtest/gtest.h>
#include <time.h>

#include <cmath>
#include <filesystem>
#include <optional>
#include <utility>

#include "common/bincancelinfo.h"
#include "common/missing.h"
#include "metadata/binvarlist.h"
#include "support/agreement.h"
#include "support/doublefile.h"
#include "support/hostdoubles.h"
#include "support/tempdir.h"

namespace {

// What clock() answers, so that a test knows the names of temporary files.
std::optional<clock_t> stoppedClock;

}  // namespace

// Takes the C library's place in this program.
extern "C" clock_t clock() noexcept {
  if (stoppedClock) return *stoppedClock;
  timespec used{};
  clock_gettime(CLOCK_PROCESS_CPUTIME_ID, &used);
  return used.tv_sec * 1000000 + used.tv_nsec / 1000;
}

namespace {

using Doubles = std::vector<double>;
using Rows = std::vector<Doubles>;
using Strings = std::vector<std::string>;
using Var = IBINVariable;
namespace fs = std::filesystem;

const double kMissing = MCMV::Missing();
const double kNaN = std::nan("");

// By variable index; the files are those of class, w, age and color.
enum { kAge, kClass, kColor, kWeight };
enum { kClassFile, kWeightFile, kAgeFile, kColorFile };

BINVarList FourVariables() {
  BINVarList list;
  list.AddContVar("age", "", Var::RoleAttribute);
  list.AddCatVar("class", "", 2, Var::MeasureNumericCategorical, Var::RoleTarget);
  list.AddCatVar("color", "", 2, Var::MeasureStringCategorical, Var::RoleAttribute);
  list.AddWeightVar("w", "", Var::RoundClosest);
  list.AddDiscreteUserMissing(kAge, -99.0, "");
  list.SetMissingInterval(kAge, 120, 130);
  return list;
}

class BINDataPreparatorTest : public testing::Test {
 protected:
  BINDataPreparatorTest() { Make(directory.Path()); }
  ~BINDataPreparatorTest() override { stoppedClock.reset(); }

  void Make(const std::string& tempDirName) {
    preparator.emplace(list, cancel, tempDirName, nullptr, 0);
  }

  std::string Process(const Rows& rows) {
    RowIterator records(rows);
    return Text(preparator->ProcessSource(records));
  }

  bool IsUsable(int file) {
    bool usable = false;
    EXPECT_TRUE(preparator->IsValidTarget(file, usable).IsOK());
    return usable;
  }

  // Without the directory.
  Strings FileNames() const {
    Strings names;
    for (const std::string& name : preparator->GetFileNames()) {
      names.push_back(fs::path(name).filename());
    }
    return names;
  }

  TempDir directory;
  BINVarList list = FourVariables();
  BINCancelInfo cancel{nullptr};
  std::optional<BINDataPreparator> preparator;
};

constexpr int kNone = -1;

struct RecordExample {
  const char* name;
  Doubles in;
  Doubles out;
  int stoppedFile = kNone;
  std::string status = "0/0[0 0 0]";
};

const std::string kBadTarget = "120012/1[1 0 0]";
const std::string kBadColor = "120012/1[3 0 0]";

const double kM = kMissing;
const RecordExample kRecords[] = {
    {"Plain", {30, 1, 0, 2}, {1, 2, 30, 0}},
    {"WeightRoundsToZero", {30, 1, 0, 0.4}, {0, 0, 0, 0}},
    {"BadCodeOfADroppedRecord", {30, 256, 256, kM}, {0, 0, 0, 0}},
    {"AgeNaNIsAValue", {kNaN, 1, 0, 1}, {1, 1, kNaN, 0}},
    {"TargetTruncatesToMinusOne", {30, -1.5, 0, 1}, {kM, 1, 30, 0}},
    {"TargetTruncatesToZero", {30, -0.5, 0, 1}, {-0.5, 1, 30, 0}},
    {"TargetTruncatesTo255", {30, 255.9, 0, 1}, {255.9, 1, 30, 0}},
    {"TargetMinusTwo", {30, -2, 0, 1}, {0, 1, 30, 0}, kClassFile, kBadTarget},
    {"Target256", {30, 256, 0, 1}, {0, 1, 30, 0}, kClassFile, kBadTarget},
    {"TargetNaN", {30, kNaN, 0, 1}, {0, 1, 30, 0}, kClassFile, kBadTarget},
    {"TargetHuge", {30, 4294967296.0, 0, 1}, {0, 1, 30, 0}, kClassFile, kBadTarget},
    {"ColorMissing", {30, 1, kM, 1}, {1, 1, 30, kM}},
    {"ColorMinusOne", {30, 1, -1, 1}, {1, 1, 30, kM}},
    {"ColorTruncatesToMinusOne", {30, 1, -1.5, 1}, {1, 1, 30, 0}, kColorFile, kBadColor},
    {"Color256", {30, 1, 256, 1}, {1, 1, 30, 0}, kColorFile, kBadColor},
    {"ColorNaN", {30, 1, kNaN, 1}, {1, 1, 30, 0}, kColorFile, kBadColor},
    {"ColorInfinite", {30, 1, -HUGE_VAL, 1}, {1, 1, 30, 0}, kColorFile, kBadColor},
};

TEST_F(BINDataPreparatorTest, PreparesARecordByFile) {
  for (const auto& [name, values, prepared, stoppedFile, status] : kRecords) {
    SCOPED_TRACE(name);
    Make(directory.Path());
    MCCommon::Record in(4);
    MCCommon::Record out(6);
    for (std::size_t i = 0; i < in.Size(); ++i) in[i] = values[i];
    for (std::size_t i = 0; i < out.Size(); ++i) out[i] = 77;
    EXPECT_EQ(Text(preparator->ProcessRecord(in, out)), status);
    for (std::size_t i = 0; i < out.Size(); ++i) {  // zeros beyond the files
      EXPECT_EQ(Text(Doubles{std::as_const(out)[i]}),
                Text(Doubles{i < prepared.size() ? prepared[i] : 0.0}))
          << i;
    }
    for (int file = 0; file < 4; ++file) EXPECT_EQ(IsUsable(file), file != stoppedFile) << file;
  }
}

// Of more records than the buffer holds, too, which is written several times.
TEST_F(BINDataPreparatorTest, WritesAFilePerVariableUpToItsFirstBadCode) {
  Rows rows{{1, 0, 1, 2}, {2, 1, 256, 0.2}, {3, 1, 300, 1}, {}, {4, 0, 0, 1.5}};
  rows.resize(25'000, {5, 1, 0, 1});
  EXPECT_EQ(Process(rows), "0/0[0 0 0]");
  ASSERT_EQ(preparator->GetAllvarNumOfCases(), 24'998u);
  Rows files{{0, 1, 0}, {2, 1, 2}, {1, 3, 4}};
  files[kClassFile].resize(24'998, 1);
  files[kWeightFile].resize(24'998, 1);
  files[kAgeFile].resize(24'998, 5);
  files.push_back({1});
  for (std::size_t file = 0; file < files.size(); ++file) {
    EXPECT_TRUE(ReadDoubles(preparator->GetFileNames()[file]) == files[file]) << file;
  }
  EXPECT_EQ(preparator->GetNumOfCategories(), (std::vector<int>{1, 0, 0, 1}));
  EXPECT_TRUE(IsUsable(kAgeFile) && !IsUsable(kColorFile));
  EXPECT_TRUE(preparator->HasStopped(kColorFile));
}

TEST_F(BINDataPreparatorTest, PassesOverTakenNamesUnlessCancelled) {
  stoppedClock = 0x10;
  WriteDoubles(directory.Path() + "/10", {9});
  WriteDoubles(directory.Path() + "/12", {9});
  WriteDoubles(directory.Path() + "/13", {9});
  EXPECT_TRUE(preparator->SetUpTempFiles().IsOK());
  EXPECT_EQ(FileNames(), (Strings{"11", "14", "15", "16"}));

  CountingCancel query(3);
  cancel.SetCancelPtr(&query);
  EXPECT_EQ(Process({{1, 0, 0, 1}}), "1/-1[0 0 0]");
  EXPECT_EQ(query.polls, 3) << "once per taken name";
  EXPECT_EQ(Text(preparator->GetStatus()), "1/-1[0 0 0]");
}

TEST_F(BINDataPreparatorTest, LeavesAloneANameTakenSinceItsChoice) {
  stoppedClock = 0x10;
  RowIterator records({{1, 0, 1, 1}, {2, 1, 0, 1}});
  records.onNext = [&] {
    WriteDoubles(directory.Path() + "/11", {9});
    WriteDoubles(directory.Path() + "/14", {9});
  };
  EXPECT_TRUE(preparator->ProcessSource(records).IsOK());
  EXPECT_EQ(FileNames(), (Strings{"10", "15", "12", "13"}));
  EXPECT_EQ(ReadDoubles(preparator->GetFileNames()[kWeightFile]), (Doubles{1, 1}));
  preparator.reset();
  EXPECT_EQ(directory.FileCount(), 2u);
  EXPECT_EQ(ReadDoubles(directory.Path() + "/11"), Doubles{9});
}

TEST_F(BINDataPreparatorTest, RefusesADirectoryNameThatHoldsANul) {
  CountingCancel query(1000);  // ends a search that goes on for ever
  cancel.SetCancelPtr(&query);
  for (const std::string& rest : {std::string(1, '\0'), std::string("\0\0/", 3)}) {
    Make(directory.Path() + rest);
    EXPECT_EQ(Process({{1, 0, 0, 1}}), "120021/-1[0 0 0]");
    EXPECT_EQ(directory.FileCount(), 0u);
  }
}

}  // namespace
