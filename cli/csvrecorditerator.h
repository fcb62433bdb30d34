#pragma once

#include <cstdint>
#include <exception>
#include <string>
#include <vector>

#include "cli/csvreader.h"
#include "cli/inputvariables.h"
#include "cli/missingtexts.h"
#include "host/record.h"
#include "host/recorditerator.h"
#include "metadata/bincatnumencoder.h"
#include "metadata/binstringencoder.h"

namespace MCBin {

// The second pass: hands the file's records to the component, one at a time.
//
// A failure (the file changed, or cannot be read) is thrown at the component, which ends
// the run with an error of its own; RethrowFailure() then tells what really happened.
class CsvRecordIterator : public MCCommon::RecordIterator {
 public:
  // Reads after the header, which it takes off `reader` itself. All three stay the
  // caller's. `recordCount` is what the first pass counted.
  CsvRecordIterator(CsvReader& reader, const InputVariables& variables,
                    const MissingTexts& missingTexts, std::uint64_t recordCount);

  bool HasMore() override;
  const MCCommon::Record* Next() override;

  bool IsAtEnd() const { return fAtEnd; }

  void RethrowFailure() const;

 private:
  // How a field becomes a value: by one of the encoders, or as a number.
  struct Column {
    std::size_t position;
    const BINCatNumEncoder* numbers;
    const BINStringEncoder* texts;
  };

  void ReadRecord();
  double Code(const Column& column, const CsvField& field);

  CsvReader& fReader;
  const MissingTexts& fMissingTexts;
  const std::uint64_t fRecordCount;
  std::uint64_t fRecordsRead = 0;
  std::vector<Column> fColumns;  // by variable index
  MCCommon::Record fRecord;
  bool fHasRecord = false;
  bool fAtEnd = false;
  std::exception_ptr fFailure;
  std::string fText;  // reused: the encoder wants a std::string
};

}  // namespace MCBin
