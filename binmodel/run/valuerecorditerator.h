#pragma once

#include <cstddef>
#include <cstdint>
#include <exception>
#include <memory>
#include <vector>

#include "host/record.h"
#include "host/recorditerator.h"
#include "io/valuefile.h"

namespace MCBinModel {

// Hands some columns of a value file to the component, one record at a time.
//
// A failure (the file cannot be read) is thrown at the component, which ends the run with an
// error of its own; RethrowFailure() then tells what really happened.
//
// At the last record it lets the file go, which closes with its last owner.
class ValueRecordIterator final : public MCCommon::RecordIterator {
 public:
  // Position i of a record holds the value of columns[i].
  ValueRecordIterator(std::shared_ptr<const MCBin::ValueFile> values,
                      std::vector<std::size_t> columns);

  ValueRecordIterator(const ValueRecordIterator&) = delete;
  ValueRecordIterator& operator=(const ValueRecordIterator&) = delete;

  bool HasMore() override;
  const MCCommon::Record* Next() override;

  // HasMore() has answered that there is no other record.
  bool IsAtEnd() const { return fValues == nullptr; }

  std::uint64_t GetRecordCount() const { return fRecordCount; }
  std::uint64_t GetRecordsRead() const { return fRecordsRead; }

  void RethrowFailure() const;

 private:
  void ReadBlock();

  std::shared_ptr<const MCBin::ValueFile> fValues;
  const std::uint64_t fRecordCount;
  const std::size_t fRecordsPerBlock;
  const std::vector<std::size_t> fColumns;
  std::vector<double> fBlock;  // column by column
  std::size_t fBlocksRead = 0;
  std::size_t fNextInBlock;
  std::uint64_t fRecordsRead = 0;
  MCCommon::Record fRecord;
  double* const fRecordValues;  // which lie side by side
  std::exception_ptr fFailure;
};

}  // namespace MCBinModel
