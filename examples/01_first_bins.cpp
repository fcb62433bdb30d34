// From nothing to bins: which ages buy? Records in memory, binned against a target.
//
//   g++ -std=c++17 01_first_bins.cpp $(pkg-config --cflags --libs mcbinning) -o first_bins
//
// For CMake see CMakeLists.txt.

#include <mcbinning/mcbinning.h>

#include <iostream>
#include <memory>
#include <string>
#include <vector>

int main() {
  // begin readme
  BINVarList variables;
  const int age = variables.AddContVar("age", "", IBINVariable::RoleAttribute);
  const int buys = variables.AddCatVar("buys", "", std::vector<std::string>{"no", "yes"},
                                       IBINVariable::RoleTarget);
  MCCommon::InMemoryRecordIterator records;  // or a MCCommon::RecordIterator of your own
  for (int i = 18; i < 78; ++i) records.Add({1.0 * i, i >= 30 && i < 46 ? 1.0 : 0.0});

  BINSettings settings;
  settings.SetNumberOfBins(1000);
  BINFactory factory;
  const std::unique_ptr<IBINAlgorithm> binning(factory.CreateBINAlgorithm(settings, variables));
  MCBinning::MCStatus status =
      binning ? binning->CreateBins(records, nullptr, nullptr) : factory.GetStatus();
  BINAttributeTargetResults results;
  if (!status.IsError()) {
    status = binning->GetBinningResults().GetAttributeTargetCutPoints(age, buys, results);
  }
  if (status.IsError() || results.GetCellCounts().front().empty()) {
    std::cerr << "no bins: status " << status.GetErrorCode() << '\n';
    return 1;
  }
  for (const double cutPoint : results.GetCutPoints()) std::cout << "cut at " << cutPoint << '\n';
  for (const std::vector<double>& bin : results.GetCellCounts()) {
    std::cout << bin[0] << " people: " << bin[1] << " do not buy, " << bin[2] << " do\n";
  }
  // end readme
}
