// A host as small as can be: bins one attribute against a target that changes half way.

#include <mcbinning/host/inmemoryrecorditerator.h>
#include <mcbinning/mcbinning.h>

#include <iostream>
#include <memory>
#include <vector>

int main() {
  BINVarList variables;
  const int attribute = variables.AddContVar("value", "", IBINVariable::RoleAttribute);
  const int target =
      variables.AddCatVar("class", "", std::vector<double>{0.0, 1.0}, IBINVariable::RoleTarget);

  MCCommon::InMemoryRecordIterator records;
  for (int i = 0; i < 40; ++i) records.Add({double(i), i < 20 ? 0.0 : 1.0});

  BINSettings settings;
  settings.SetNumberOfBins(10);
  BINFactory factory;
  const std::unique_ptr<IBINAlgorithm> algorithm(factory.CreateBINAlgorithm(settings, variables));
  if (!algorithm) {
    std::cerr << "no algorithm: status " << factory.GetStatus().GetErrorCode() << '\n';
    return 1;
  }
  const MCBinning::MCStatus status = algorithm->CreateBins(records, nullptr, nullptr);

  BINAttributeTargetResults results;
  algorithm->GetBinningResults().GetAttributeTargetCutPoints(attribute, target, results);
  std::cout << "status " << status.GetErrorCode() << ", cut points:";
  for (const double cutPoint : results.GetCutPoints()) std::cout << ' ' << cutPoint;
  std::cout << '\n';

  const std::vector<double> expected{19.0};
  return status.IsOK() && results.GetCutPoints() == expected ? 0 : 1;
}
