// docs/guide.md, from "Hand over records" to "Weights": both algorithms, and reading their results.

#include <mcbinning/mcbinning.h>

#include <algorithm>
#include <cstddef>
#include <iostream>
#include <memory>
#include <string>
#include <vector>

namespace {

// begin iterator
using Table = std::vector<std::vector<double>>;

class TableIterator : public MCCommon::RecordIterator {
 public:
  explicit TableIterator(const Table& rows) : fRows(rows), fRecord(rows.front().size()) {}

  bool HasMore() override { return fNext < fRows.size(); }

  const MCCommon::Record* Next() override {
    const std::vector<double>& row = fRows[fNext++];
    for (std::size_t i = 0; i < row.size(); ++i) fRecord[i] = row[i];
    return &fRecord;
  }

 private:
  const Table& fRows;
  MCCommon::Record fRecord;
  std::size_t fNext = 0;
};
// end iterator

// begin apply
// The bin of a value that is not missing, counted from 0.
std::size_t FindBin(const std::vector<double>& cutPoints, double value, bool rightBorderClosed) {
  const auto cut = rightBorderClosed ? std::lower_bound(cutPoints.begin(), cutPoints.end(), value)
                                     : std::upper_bound(cutPoints.begin(), cutPoints.end(), value);
  return static_cast<std::size_t>(cut - cutPoints.begin());
}
// end apply

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
Table Rows() {
  Table rows;
  for (int i = 0; i < 90; ++i) {
    const double y = i % 9;
    rows.push_back({1.0 * i, y, i < 45 ? 0.0 : 1.0, i % 9 / 3 * 1.0, 1.0 + i % 2});
  }
  return rows;
}

bool RunSupervised() {
  BINVarList variables = Variables();
  const Table rows = Rows();
  TableIterator records(rows);

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

  const std::vector<double>& cuts = pair.GetCutPoints();
  return !again.IsError() && cuts == std::vector<double>{2.0, 5.0} &&
         FindBin(cuts, 2.0, true) == 0 && FindBin(cuts, 2.0, false) == 1 &&
         FindBin(cuts, 99.0, true) == 2;
}

bool RunEqualFrequency() {
  BINVarList variables = Variables();
  const Table rows = Rows();
  TableIterator records(rows);

  // begin equal frequency
  EFBINSettings settings;
  settings.SetNumberOfBins(4);

  EFBINFactory factory;
  const std::unique_ptr<IEFBINAlgorithm> algorithm(
      factory.CreateEFBINAlgorithm(settings, variables));
  const std::vector<int> attributes{kX, kY};
  if (!algorithm || algorithm->CreateBins(records, &attributes).IsError()) return false;

  BINAttributeResults results;
  algorithm->GetBinningResults().GetAttributeCutPoints(kX, results);
  for (const double weight : results.GetCellCounts()) std::cout << weight << ' ';
  // end equal frequency
  std::cout << '\n';
  return results.GetCutPoints().size() == 3;
}

}  // namespace

int main() { return RunSupervised() && RunEqualFrequency() ? 0 : 1; }
