#include "columniterator.h"

ColumnIterator::ColumnIterator(const std::vector<std::vector<double>>& columns)
    : fColumns(columns), fRecord(columns.size()) {}

bool ColumnIterator::HasMore() { return fNext < fColumns.front().size(); }

const MCCommon::Record* ColumnIterator::Next() {
  for (std::size_t i = 0; i < fColumns.size(); ++i) fRecord[i] = fColumns[i][fNext];
  ++fNext;
  return &fRecord;
}
