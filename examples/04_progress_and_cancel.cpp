// A run that tells how far it is, and a run that is stopped: what remains of it, and that no
// temporary file does.
//
//   g++ -std=c++17 04_progress_and_cancel.cpp $(pkg-config --cflags --libs mcbinning) -o progress

#include <mcbinning/mcbinning.h>

#include <atomic>
#include <cstddef>
#include <exception>
#include <filesystem>
#include <iostream>
#include <iterator>
#include <memory>
#include <vector>

#include "workdirectory.h"

namespace {

constexpr const char* kNames[] = {"x", "y", "z"};

// begin progress
class ConsoleProgress : public ProgressListener {
 public:
  // The index counts records up; then it drops to that of the first attribute that is binned.
  void ReportProgress(ProgressReport& report) override {
    const int index = report.DiscreteMeasure("IndexVar");
    if (index <= fLastIndex) fAreRecordsRead = true;
    fLastIndex = index;
    std::cout << (fAreRecordsRead ? "variable " : "record ") << index << " after "
              << report.ScaleMeasure("elapsedTime") << " s\n";
  }

  bool AreRecordsRead() const { return fAreRecordsRead; }

 private:
  int fLastIndex = 0;
  bool fAreRecordsRead = false;
};
// end progress

// begin cancel
class StopButton : public MCQueryCancel {
 public:
  void Press() { fPressed = true; }  // from any thread
  bool QueryCancel() override { return fPressed; }

 private:
  std::atomic<bool> fPressed{false};
};
// end cancel

// Stands for somebody who has seen enough when the first attribute is binned.
class ImpatientUser : public ConsoleProgress {
 public:
  explicit ImpatientUser(StopButton& stop) : fStop(stop) {}

  void ReportProgress(ProgressReport& report) override {
    ConsoleProgress::ReportProgress(report);
    if (AreRecordsRead()) fStop.Press();
  }

 private:
  StopButton& fStop;
};

std::ptrdiff_t CountFiles(const WorkDirectory& directory) {
  return std::distance(std::filesystem::directory_iterator(directory.Path()), {});
}

// Three attributes and a target; what comes of a run goes to standard output.
void Run(ProgressListener& progress, StopButton& stop) {
  BINVarList variables;
  for (const char* name : kNames) variables.AddContVar(name, "", IBINVariable::RoleAttribute);
  const int target =
      variables.AddCatVar("class", "", std::vector<double>{0.0, 1.0}, IBINVariable::RoleTarget);
  MCCommon::InMemoryRecordIterator records;
  for (int i = 0; i < 4000; ++i) {
    records.Add({1.0 * i, i % 100 * 1.0, i % 7 * 1.0, i < 2000 ? 0.0 : 1.0});
  }

  const WorkDirectory directory;
  // begin attach
  BINSettings settings;
  settings.SetNumberOfBins(1000);
  settings.SetTempDirName(directory.Path());
  settings.SetProgressListener(&progress);
  settings.SetNSkippedCasesReports(1000);  // every 1000th record
  settings.SetNSkippedAttReports(0);       // every attribute
  settings.SetCancelPointer(&stop);
  // end attach

  BINFactory factory;
  std::unique_ptr<IBINAlgorithm> binning(factory.CreateBINAlgorithm(settings, variables));
  const MCBinning::MCStatus status =
      binning ? binning->CreateBins(records, nullptr, nullptr) : factory.GetStatus();
  std::cout << (status.IsError() ? "ended with error " : "done with status ")
            << status.GetErrorCode() << '\n';
  if (!binning) return;

  // A cancelled run keeps the results that it has; error 120013 stands for no result.
  for (int attribute = 0; attribute < target; ++attribute) {
    BINAttributeTargetResults results;
    const MCBinning::MCStatus found =
        binning->GetBinningResults().GetAttributeTargetCutPoints(attribute, target, results);
    std::cout << kNames[attribute] << ": status " << found.GetErrorCode() << ", "
              << results.GetCutPoints().size() << " cut points\n";
  }
  std::cout << CountFiles(directory) << " temporary files while the algorithm is there\n";
  binning.reset();
  std::cout << CountFiles(directory) << " temporary files once it is deleted\n";
}

}  // namespace

int main() {
  try {
    StopButton neverPressed;
    ConsoleProgress progress;
    Run(progress, neverPressed);

    std::cout << "\nand now with a user who stops it\n";
    StopButton stop;
    ImpatientUser user(stop);
    Run(user, stop);
    return 0;
  } catch (const std::exception& error) {
    std::cerr << error.what() << '\n';
    return 1;
  }
}
