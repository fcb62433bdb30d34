// A run that tells how far it is, and a run that is stopped: what remains of it, and that no
// temporary file does.
//
//   g++ -std=c++17 04_progress_and_cancel.cpp $(pkg-config --cflags --libs mcbinning) -o progress

#include <mcbinning/mcbinning.h>

#include <atomic>
#include <chrono>
#include <cstddef>
#include <exception>
#include <filesystem>
#include <iostream>
#include <iterator>
#include <memory>
#include <stdexcept>
#include <vector>

#include "workdirectory.h"

namespace {

constexpr const char* kNames[] = {"x", "y", "z"};
constexpr int kRecordCount = 4000;

// begin progress
// Tells the phase, how much of it is done and how long the rest of it will take.
class ConsoleProgress : public ProgressListener {
 public:
  using Clock = std::chrono::steady_clock;

  // Writes a line every `interval` at most; only the host knows how many records it has.
  ConsoleProgress(Clock::duration interval, double recordCount)
      : fInterval(interval), fRecordCount(recordCount) {}

  // To be called before the run.
  void Follow(const IBINAlgorithm& binning) {
    fBinning = &binning;
    fLastReport = Clock::now();
  }

  void ReportProgress(ProgressReport& /*report*/) override {
    const MCBinning::RunReport& run = MCBinning::GetRunReport(*fBinning);
    const Clock::time_point now = Clock::now();
    if (run.phase != fPhase) fPhaseStart = fLastReport;
    fPhase = run.phase;
    fLastReport = now;
    if (now - fLastLine < fInterval) return;

    fLastLine = now;
    const bool areRead = AreRecordsRead();
    const double all = areRead ? static_cast<double>(run.attributeCount) : fRecordCount;
    const auto done = static_cast<double>(areRead ? run.attributesDone : run.recordsRead);
    const std::chrono::duration<double> spent = now - fPhaseStart;
    std::cout << (areRead ? "variable " : "record ") << done << " of " << all
              << ", to go: " << spent.count() / done * (all - done) << " s\n";
  }

  bool AreRecordsRead() const { return fPhase == MCBinning::RunPhase::kBinning; }

 private:
  Clock::duration fInterval;
  double fRecordCount;
  const IBINAlgorithm* fBinning = nullptr;
  MCBinning::RunPhase fPhase = MCBinning::RunPhase::kNotStarted;
  Clock::time_point fPhaseStart;
  Clock::time_point fLastReport;
  Clock::time_point fLastLine;
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
  explicit ImpatientUser(StopButton& stop)
      : ConsoleProgress(std::chrono::seconds(0), kRecordCount), fStop(stop) {}

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
void Run(ConsoleProgress& progress, StopButton& stop) {
  BINVarList variables;
  for (const char* name : kNames) variables.AddContVar(name, "", IBINVariable::RoleAttribute);
  const int target =
      variables.AddCatVar("class", "", std::vector<double>{0.0, 1.0}, IBINVariable::RoleTarget);
  // With such a list a run would end the program.
  if (variables.FindRoleConflict() >= 0) throw std::logic_error("a variable has a wrong role");
  MCCommon::InMemoryRecordIterator records;
  for (int i = 0; i < kRecordCount; ++i) {
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
  if (binning) progress.Follow(*binning);
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
    // Every report, for the sake of this short run; std::chrono::seconds(1) is what people like.
    ConsoleProgress progress(std::chrono::seconds(0), kRecordCount);
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
