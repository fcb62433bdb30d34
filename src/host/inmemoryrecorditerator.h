#pragma once

#include <cstddef>
#include <vector>

#include "record.h"
#include "recorditerator.h"
#include "recordsexport.h"

namespace MCCommon {

// Records held in memory and handed out in order: for tests and for hosts with little data. What
// makes, copies or adds to it may throw std::bad_alloc.
class MCRECORDS_API InMemoryRecordIterator : public RecordIterator {
 public:
  // Over no records, or over a copy of `records`.
  InMemoryRecordIterator();
  explicit InMemoryRecordIterator(const std::vector<Record>& records);
  ~InMemoryRecordIterator() override;

  // Appends a record whose position i holds values[i].
  void Add(const std::vector<double>& values);

  // Starts again at the first record.
  void Rewind();

  bool HasMore() override;

  // Null after the last record.
  const Record* Next() override;

 private:
  std::vector<Record> fRecords;
  std::size_t fNext = 0;
};

}  // namespace MCCommon
