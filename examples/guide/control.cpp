// docs/guide.md, from "Follow the progress" to "Use several cores".

#include <mcbinning/mcbinning.h>

#include <atomic>
#include <iostream>
#include <memory>
#include <thread>
#include <vector>

namespace {

// begin progress
class ConsoleProgress : public ProgressListener {
 public:
  void ReportProgress(ProgressReport& report) override {
    std::cerr << report.DiscreteMeasure("IndexVar") << " after "
              << report.ScaleMeasure("elapsedTime") << " s\n";
  }
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

// begin status
bool Report(const MCBinning::MCStatus& status) {
  if (status.IsOK()) return true;
  std::cerr << (status.IsError() ? "error " : "warning ") << status.GetErrorCode() << '\n';
  return !status.IsError();
}
// end status

BINVarList Variables() {
  BINVarList variables;
  variables.AddContVar("x", "", IBINVariable::RoleAttribute);
  variables.AddCatVar("class", "", std::vector<double>{0.0, 1.0}, IBINVariable::RoleTarget);
  return variables;
}

MCCommon::InMemoryRecordIterator Records() {
  MCCommon::InMemoryRecordIterator records;
  for (int i = 0; i < 40; ++i) records.Add({1.0 * i, i < 20 ? 0.0 : 1.0});
  return records;
}

bool FollowProgress() {
  BINVarList variables = Variables();
  MCCommon::InMemoryRecordIterator records = Records();
  // begin attach
  ConsoleProgress progress;
  StopButton stop;
  BINSettings settings;
  settings.SetNumberOfBins(10);
  settings.SetProgressListener(&progress);
  settings.SetNSkippedCasesReports(10);  // every 10th record
  settings.SetNSkippedAttReports(0);     // every attribute
  settings.SetCancelPointer(&stop);
  // end attach
  BINFactory factory;
  const std::unique_ptr<IBINAlgorithm> algorithm(factory.CreateBINAlgorithm(settings, variables));
  return Report(algorithm->CreateBins(records, nullptr, nullptr));
}

bool Cancel() {
  BINVarList variables = Variables();
  MCCommon::InMemoryRecordIterator records = Records();
  BINSettings settings;
  settings.SetNumberOfBins(10);
  BINFactory factory;
  const std::unique_ptr<IBINAlgorithm> algorithm(factory.CreateBINAlgorithm(settings, variables));
  StopButton stop;
  algorithm->SetCancelPtr(&stop);
  stop.Press();
  return algorithm->CreateBins(records, nullptr, nullptr).GetErrorCode() == 1;
}

bool UseTwoThreads() {
  // begin threads
  std::atomic<int> failures{0};
  const auto bin = [&failures] {
    BINVarList variables = Variables();  // each thread its own list, records and algorithm
    MCCommon::InMemoryRecordIterator records = Records();
    BINSettings settings;
    settings.SetNumberOfBins(10);
    BINFactory factory;
    const std::unique_ptr<IBINAlgorithm> algorithm(factory.CreateBINAlgorithm(settings, variables));
    if (!algorithm || algorithm->CreateBins(records, nullptr, nullptr).IsError()) ++failures;
  };
  std::thread first(bin);
  std::thread second(bin);
  first.join();
  second.join();
  // end threads
  return failures == 0;
}

}  // namespace

int main() { return FollowProgress() && Cancel() && UseTwoThreads() ? 0 : 1; }
