// What docs/guide.md quotes about columns; bins them and says whether the bins are right.

#include <mcbinning/mcbinning.h>

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <utility>
#include <vector>

namespace {

// begin columns
// Columns in memory, some 10,000 records at a time.
class MemoryBlocks : public MCBinning::ColumnRecordIterator {
 public:
  MemoryBlocks(std::vector<MCBinning::BlockColumn> columns, std::size_t recordCount)
      : fColumns(std::move(columns)), fLeft(recordCount) {}

 protected:
  MCBinning::RecordBlock NextBlock() override {
    for (MCBinning::BlockColumn& column : fColumns) {  // on to what follows the block before
      column.values += static_cast<std::ptrdiff_t>(fTaken) * column.stride;
      column.validityOffset += fTaken;
    }
    fTaken = std::min<std::size_t>(fLeft, 10000);
    fLeft -= fTaken;
    return {fTaken, fColumns.data(), fColumns.size()};
  }

 private:
  std::vector<MCBinning::BlockColumn> fColumns;  // by variable index
  std::size_t fLeft;
  std::size_t fTaken = 0;
};
// end columns

}  // namespace

// 30,000 records in rows of x and y; y is missing in every second one.
int main() {
  constexpr std::size_t kRecords = 30000;
  std::vector<double> rows;
  for (std::size_t i = 0; i < kRecords; ++i) {
    rows.insert(rows.end(), {static_cast<double>(i), static_cast<double>(i % 100)});
  }
  const std::vector<std::uint8_t> validity(kRecords / 8, 0x55);
  BINVarList variables;
  variables.AddContVar("x", "", IBINVariable::RoleAttribute);
  variables.AddContVar("y", "", IBINVariable::RoleAttribute);
  MemoryBlocks records({{rows.data(), 2, nullptr, 0}, {rows.data() + 1, 2, validity.data(), 0}},
                       kRecords);

  EFBINSettings settings;
  settings.SetNumberOfBins(2);
  EFBINFactory factory;
  const std::unique_ptr<IEFBINAlgorithm> algorithm(
      factory.CreateEFBINAlgorithm(settings, variables));
  if (!algorithm || !algorithm->CreateBins(records, nullptr).IsOK()) return 1;
  BINAttributeResults x;
  BINAttributeResults y;
  algorithm->GetBinningResults().GetAttributeCutPoints(0, x);
  algorithm->GetBinningResults().GetAttributeCutPoints(1, y);
  const std::vector<double> halves{15000, 15000};
  return x.GetCellCounts() == halves && y.GetTotalWeight() == 15000 ? 0 : 1;
}
