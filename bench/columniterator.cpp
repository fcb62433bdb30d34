#include "columniterator.h"

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

}  // namespace bench
