// From a host's own run to what the library of bins can do: labels of bins, and a bin file that the
// tool `mcbin` reads as well (mcbin apply, report, export).
//
//   g++ -std=c++17 07_keep_bins.cpp $(pkg-config --cflags --libs mcbinmodel mcbinning) -o keep_bins

#include <mcbinmodel/mcbinmodel.h>
#include <mcbinning/mcbinning.h>

#include <exception>
#include <fstream>
#include <iostream>
#include <memory>
#include <string>
#include <vector>

#include "workdirectory.h"

namespace {

// Which ages buy?
std::unique_ptr<IBINAlgorithm> Bin() {
  BINVarList variables;
  variables.AddContVar("age", "", IBINVariable::RoleAttribute);
  variables.AddCatVar("buys", "", std::vector<std::string>{"no", "yes"}, IBINVariable::RoleTarget);
  if (variables.FindRoleConflict() >= 0) return nullptr;  // a run would end the program
  MCCommon::InMemoryRecordIterator records;
  for (int i = 18; i < 78; ++i) records.Add({1.0 * i, i >= 30 && i < 46 ? 1.0 : 0.0});

  BINSettings settings;
  settings.SetNumberOfBins(1000);
  BINFactory factory;
  std::unique_ptr<IBINAlgorithm> binning(factory.CreateBINAlgorithm(settings, variables));
  if (!binning || binning->CreateBins(records, nullptr, nullptr).IsError()) return nullptr;
  return binning;
}

}  // namespace

int main() {
  try {
    const std::unique_ptr<IBINAlgorithm> binning = Bin();
    if (!binning) return 1;
    const WorkDirectory directory;
    const std::string path = directory.Path() + "/bins.json";

    // begin model
    const MCBinModel::BinModel model = MCBinModel::MakeBinModel(*binning);
    std::ofstream(path) << MCBinModel::WriteBinFile(model);
    const MCBinModel::BinModel again = MCBinModel::ReadBinFile(path);
    // end model

    // begin label
    const MCBinModel::AttributeBins& bins = again.results[0];
    const bool rightClosed = again.settings.rightClosed;
    for (const double age : {20.0, 29.0, 35.0, 70.0}) {
      const std::size_t bin = MCBinModel::FindBin(bins.cutPoints, age, rightClosed);
      std::cout << age << " is in " << bin << ", "
                << MCBinModel::BinLabel(again.GetAttribute(bins), bins.cutPoints, bin, rightClosed)
                << '\n';
    }
    // end label
    return 0;
  } catch (const std::exception& error) {
    std::cerr << error.what() << '\n';
    return 1;
  }
}
