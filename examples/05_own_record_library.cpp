// A host with a record library of its own in place of mcrecords: own_records/ has that library,
// with its record class, missing value and iterator over columns, and builds mcbinning against it.
//
//   cmake -S own_records -B build && cmake --build build && build/05_own_record_library

#include <mcbinning/mcbinning.h>

#include <iostream>
#include <memory>
#include <vector>

#include "columniterator.h"

int main() {
  // Reaction times in milliseconds, two of them not measured, and whether the answer was right.
  const std::vector<std::vector<double>> columns{
      {210, 220, 230, 240, 250, 260, 270, 280, 290, -99999, 310, 320, 330, 340, 350, -99999, 370},
      {1, 1, 1, 1, 1, 1, 1, 1, 1, 1, 0, 0, 0, 0, 0, 0, 0}};
  ColumnIterator records(columns);

  BINVarList variables;
  const int time = variables.AddContVar("time", "", IBINVariable::RoleAttribute);
  const int right =
      variables.AddCatVar("right", "", std::vector<double>{0.0, 1.0}, IBINVariable::RoleTarget);

  BINSettings settings;
  settings.SetNumberOfBins(1000);
  BINFactory factory;
  const std::unique_ptr<IBINAlgorithm> binning(factory.CreateBINAlgorithm(settings, variables));
  MCBinning::MCStatus status =
      binning ? binning->CreateBins(records, nullptr, nullptr) : factory.GetStatus();
  BINAttributeTargetResults results;
  if (!status.IsError()) {
    status = binning->GetBinningResults().GetAttributeTargetCutPoints(time, right, results);
  }
  if (status.IsError() || results.GetCellCounts().front().empty()) {
    std::cerr << "no bins: status " << status.GetErrorCode() << '\n';
    return 1;
  }
  for (const double cutPoint : results.GetCutPoints()) std::cout << "cut at " << cutPoint << '\n';
  std::cout << results.GetTotalWeightWithMissing() - results.GetTotalWeight() << " of "
            << results.GetTotalWeightWithMissing() << " times are missing, marked "
            << MCMV::Missing() << '\n';
}
