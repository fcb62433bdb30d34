#include "columniterator.h"

#include <algorithm>

namespace bench {

ColumnIterator::ColumnIterator(const Columns& columns)
    : fColumns{columns.target.data()},
      fRecord(columns.attributes.size() + (columns.weights.empty() ? 1 : 2)),
      fValues(&fRecord[0]),
      fCaseCount(columns.GetCaseCount()) {
  for (const Column& attribute : columns.attributes) fColumns.push_back(attribute.data());
  if (!columns.weights.empty()) fColumns.push_back(columns.weights.data());
}

const MCCommon::Record* ColumnIterator::Next() {
  double* value = fValues;
  for (const double* const column : fColumns) *value++ = column[fNext];
  ++fNext;
  return &fRecord;
}

BlockIterator::BlockIterator(const Columns& columns) : fCasesLeft(columns.GetCaseCount()) {
  const auto add = [this](const Column& column) {
    fBlock.push_back({column.data(), 1, nullptr, 0});
  };
  add(columns.target);
  for (const Column& attribute : columns.attributes) add(attribute);
  if (!columns.weights.empty()) add(columns.weights);
}

MCBinning::RecordBlock BlockIterator::NextBlock() {
  constexpr std::size_t kBlockCases = 10000;
  for (MCBinning::BlockColumn& column : fBlock) column.values += fTaken;
  fTaken = std::min(fCasesLeft, kBlockCases);
  fCasesLeft -= fTaken;
  return {fTaken, fBlock.data(), fBlock.size()};
}

}  // namespace bench
