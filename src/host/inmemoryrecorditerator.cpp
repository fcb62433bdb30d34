#include "host/inmemoryrecorditerator.h"

namespace MCCommon {

InMemoryRecordIterator::InMemoryRecordIterator() = default;

InMemoryRecordIterator::InMemoryRecordIterator(const std::vector<Record>& records)
    : fRecords(records) {}

InMemoryRecordIterator::~InMemoryRecordIterator() = default;

void InMemoryRecordIterator::Add(const std::vector<double>& values) {
  Record record(values.size());
  for (std::size_t position = 0; position < values.size(); ++position) {
    record[position] = values[position];
  }
  fRecords.push_back(record);
}

void InMemoryRecordIterator::Rewind() { fNext = 0; }

bool InMemoryRecordIterator::HasMore() { return fNext < fRecords.size(); }

const Record* InMemoryRecordIterator::Next() { return HasMore() ? &fRecords[fNext++] : nullptr; }

}  // namespace MCCommon
