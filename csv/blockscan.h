#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "binmodel/apply/weightcoder.h"
#include "csv/columnscan.h"
#include "csv/csvblock.h"
#include "csv/csvfield.h"
#include "csv/scanplan.h"

namespace MCBin {

// Makes columns of the records of a block, knowing nothing of the blocks before it. The quick way
// to what RecordScan does: numbers go straight from the text to their column.
//
//   Memory    8 bytes a value, up to four times the block.
//   Threads   two objects share nothing but the plan.
class BlockScan {
 public:
  // Borrows the plan.
  explicit BlockScan(const ScanPlan& plan);

  // Before a block: what is known of the columns, by request. It may be older than what is known
  // when the block is scanned.
  void SetKnown(const std::vector<ColumnScan>& columns);

  // False when something is to be refused in the block, or seems to be: then nothing of what
  // follows is meant, and only the records one by one tell.
  bool Scan(const CsvBlock& block);

  // Those that have no usable weight included.
  std::uint64_t GetRecordCount() const { return fRecordCount; }

  // The weights of all records as they are in the file, NaN where they are missing.
  const std::vector<double>& GetWeights() const { return fWeights; }

  // What a column has, by request.
  const ColumnScan::Later& GetColumn(std::size_t request) const { return fColumns[request]; }

  // The values of the records with a usable weight: columns as in the value file.
  const double* GetValues() const { return fValues.get(); }
  std::size_t GetStride() const { return fStride; }
  std::size_t GetValueCount() const { return fRow; }

  // Puts other codes in the place of those from 0 up; none means the codes stay.
  void Recode(std::size_t valueColumn, const std::vector<double>& codes);

 private:
  enum class Use { kNone, kNumbers, kOther };

  // A column of the file.
  struct Column {
    Use use = Use::kNone;
    std::size_t request = 0;
    double* values = nullptr;
    ColumnScan::Later* later = nullptr;
  };

  // A field that waits for the end of its record.
  struct Other {
    std::size_t request;
    CsvField field;
    std::string undoubled;
  };

  void Prepare(const CsvBlock& block);
  const char* PassBlankLine(const char* at) const;
  const char* PassLineEnd(const char* at) const;
  const char* ScanRecord(const char* at);
  const char* ScanField(const Column& column, const char* at);
  const char* ReadField(const char* at, CsvField& field, std::string& undoubled);
  bool AddNumberField(const Column& column, const CsvField& field);
  bool FinishRecord();
  void AddOther(const Other& other, bool counts);
  ColumnScan& OthersOf(std::size_t request);

  const ScanPlan& fPlan;
  std::vector<Column> fFileColumns;
  std::array<bool, 256> fBeginsDecimal{};  // which is not missing

  const char* fEnd = nullptr;
  std::uint64_t fLine = 0;
  std::uint64_t fLinesInRecord = 0;
  std::uint64_t fRecordCount = 0;

  std::unique_ptr<double[]> fValues;
  std::size_t fCapacity = 0;
  std::size_t fStride = 0;
  std::size_t fRow = 0;
  std::vector<ColumnScan::Later> fColumns;
  std::vector<char> fIsDecided;  // by request, see ColumnScan
  std::vector<double> fWeights;
  std::optional<MCBinModel::WeightCoder> fWeightCoder;
  std::vector<Other> fOthers;
  std::size_t fOtherCount = 0;  // in the record
  std::string fUndoubled;
};

}  // namespace MCBin
