// Bins of equal weight, without a target: incomes in quarters, where each record stands for
// several households and some incomes are not known. Then: which bin does a new income fall into?
//
//   g++ -std=c++17 02_equal_frequency.cpp $(pkg-config --cflags --libs mcbinning) -o quarters

#include <mcbinning/mcbinning.h>

#include <algorithm>
#include <cstddef>
#include <iostream>
#include <memory>
#include <vector>

namespace {

// begin apply
// The bin of a value that is not missing, counted from 0.
std::size_t FindBin(const std::vector<double>& cutPoints, double value, bool rightBorderClosed) {
  const auto cut = rightBorderClosed ? std::lower_bound(cutPoints.begin(), cutPoints.end(), value)
                                     : std::upper_bound(cutPoints.begin(), cutPoints.end(), value);
  return static_cast<std::size_t>(cut - cutPoints.begin());
}
// end apply

}  // namespace

int main() {
  BINVarList variables;
  const int income = variables.AddContVar("income", "", IBINVariable::RoleAttribute);
  variables.AddWeightVar("households", "", IBINVariable::RoundClosest);

  // 400 records, more of them the lower the income; every tenth income is not known.
  MCCommon::InMemoryRecordIterator records;
  for (int i = 0; i < 400; ++i) {
    const double value = i % 10 == 9 ? MCMV::Missing() : 12000.0 + i * i;
    records.Add({value, 1.0 + i % 3});
  }

  // begin run
  EFBINSettings settings;
  settings.SetNumberOfBins(4);

  EFBINFactory factory;
  const std::unique_ptr<IEFBINAlgorithm> binning(factory.CreateEFBINAlgorithm(settings, variables));
  MCBinning::MCStatus status =
      binning ? binning->CreateBins(records, nullptr) : factory.GetStatus();
  BINAttributeResults results;
  if (!status.IsError()) {
    status = binning->GetBinningResults().GetAttributeCutPoints(income, results);
  }
  if (status.IsError() || results.GetCellCounts().empty()) {
    std::cerr << "no bins: status " << status.GetErrorCode() << '\n';
    return 1;
  }
  // end run

  const std::vector<double>& cutPoints = results.GetCutPoints();
  const std::vector<double>& households = results.GetCellCounts();  // one more than cut points
  for (std::size_t bin = 0; bin < households.size(); ++bin) {
    std::cout << "bin " << bin << ": ";
    if (bin < cutPoints.size()) {
      std::cout << "up to " << cutPoints[bin];
    } else {
      std::cout << "above";
    }
    std::cout << ", " << households[bin] << " households\n";
  }
  const double unknown = results.GetTotalWeightWithMissing() - results.GetTotalWeight();
  std::cout << "income not known: " << unknown << " households\n"
            << "an income of 40000 falls into bin "
            << FindBin(cutPoints, 40000.0, settings.IsRightBorderClosed()) << '\n';
}
