// What docs/guide.md quotes about supervised runs: settings, several targets, results, threads.

#include <mcbinning/mcbinning.h>

#include <atomic>
#include <iostream>
#include <memory>
#include <string>
#include <thread>
#include <vector>

namespace {

enum { kX, kY, kClass, kColour, kWeight };

BINVarList Variables() {
  const auto attribute = IBINVariable::RoleAttribute;
  BINVarList list;
  list.AddContVar("x", "", attribute);
  list.AddContVar("y", "", attribute);
  list.AddCatVar("class", "", 2, IBINVariable::MeasureNumericCategorical, IBINVariable::RoleTarget);
  list.AddCatVar("colour", "", std::vector<std::string>{"red", "green", "blue"}, attribute);
  list.AddWeightVar("weight", "", IBINVariable::RoundClosest);
  return list;
}

// 90 records: the class changes between x = 44 and 45, the colour with every third of y.
MCCommon::InMemoryRecordIterator Records() {
  MCCommon::InMemoryRecordIterator records;
  for (int i = 0; i < 90; ++i) {
    const double y = i % 9;
    records.Add({1.0 * i, y, i < 45 ? 0.0 : 1.0, i % 9 / 3 * 1.0, 1.0 + i % 2});
  }
  return records;
}

bool RunSupervised() {
  BINVarList variables = Variables();
  MCCommon::InMemoryRecordIterator records = Records();

  // begin supervised
  BINSettings settings;
  settings.SetNumberOfBins(1000);               // how many pre-bins, when there are any
  settings.SetNumDistinctValueThreshold(1000);  // more distinct values than that: pre-bin
  settings.SetRightBorderClosed(true);          // bins are (lower, upper]
  settings.SetTempDirName("/tmp");

  BINFactory factory;
  const std::unique_ptr<IBINAlgorithm> algorithm(factory.CreateBINAlgorithm(settings, variables));
  if (!algorithm) {
    std::cerr << "no algorithm: status " << factory.GetStatus().GetErrorCode() << '\n';
    return false;
  }
  const MCBinning::MCStatus status = algorithm->CreateBins(records, nullptr, nullptr);
  // end supervised

  // begin explain
  const MCBinning::RunReport& report = MCBinning::GetRunReport(*algorithm);
  std::cout << MCBinning::Describe(status, algorithm->GetVarList()) << "; " << report.recordsStored
            << " of " << report.recordsRead << " records stored\n";
  if (report.isHostException) std::cout << "we have thrown: " << report.exceptionText << '\n';
  for (const MCBinning::RefusedCode& refused : report.refusedCodes) {
    std::cout << "record " << refused.record << " has code " << refused.code << " for "
              << algorithm->GetVarList().GetVarAt(refused.variable)->GetVariableName() << '\n';
  }
  // end explain
  if (status.IsError()) return false;

  // begin results
  std::vector<BINAttributeTargetResults> all;
  algorithm->GetBinningResults().GetAllCutPoints(all);
  for (const BINAttributeTargetResults& pair : all) {
    const IBINVariable& attribute = *algorithm->GetVarList().GetVarAt(pair.GetAttributeIndex());
    std::cout << attribute.GetVariableName() << ": status " << pair.GetStatus().GetErrorCode()
              << ", " << pair.GetCutPoints().size() << " cut points\n";
    for (const std::vector<double>& bin : pair.GetCellCounts()) {
      if (bin.empty()) continue;  // the pair was not binned
      std::cout << "  weight " << bin[0] << ", of class 0: " << bin[1] << '\n';
    }
  }
  // end results

  // begin pairs
  const std::vector<int> attributes{kX, kY, kX, kY};
  const std::vector<int> targets{kClass, kClass, kColour, kColour};
  const MCBinning::MCStatus again = algorithm->CreateBins(records, &attributes, &targets);
  BINAttributeTargetResults pair;
  algorithm->GetBinningResults().GetAttributeTargetCutPoints(kY, kColour, pair);
  // end pairs

  return !again.IsError() && pair.GetCutPoints() == std::vector<double>{2.0, 5.0};
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

int main() {
  if (RunSupervised() && UseTwoThreads()) return 0;
  std::cerr << "not the bins that were expected\n";
  return 1;
}
