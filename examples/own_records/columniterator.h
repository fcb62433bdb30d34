#pragma once

#include <mcbinning/host/record.h>
#include <mcbinning/host/recorditerator.h>

#include <cstddef>
#include <vector>

// Hands out as records what this host keeps in columns. The columns, one or more of the same
// length, stay the caller's.
class ColumnIterator : public MCCommon::RecordIterator {
 public:
  explicit ColumnIterator(const std::vector<std::vector<double>>& columns);

  bool HasMore() override;
  const MCCommon::Record* Next() override;

 private:
  const std::vector<std::vector<double>>& fColumns;
  MCCommon::Record fRecord;
  std::size_t fNext = 0;
};
