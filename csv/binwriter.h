#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "binmodel/apply/binvalues.h"
#include "binmodel/model/binmodel.h"
#include "csv/columnnames.h"
#include "csv/csvline.h"
#include "csv/csvreader.h"
#include "csv/fieldcoder.h"
#include "csv/missingtexts.h"

namespace MCBin {

// What the columns of bins hold, and what they are called.
struct BinColumns {
  MCBinModel::BinForm form = MCBinModel::BinForm::kIndex;
  std::string suffix = "_bin";             // of a new column's name
  bool replace = false;                    // the attribute's own column, instead of a new one
  std::optional<std::string> missingText;  // unset: what MakeMissingValue() says, or nothing
};

// How the file, and so the new columns, part fields and write numbers.
struct FieldMarks {
  char delimiter;
  char decimal;
};

// Turns the records of a CSV file into records with bins: a column behind the others for
// each attribute, or in the place of the attribute's own.
//
// Every text that a bin can get is made once; a record costs a search among the cut points.
class BinWriter {
 public:
  // The results to apply, as indexes into the model's. Borrows model and missing texts.
  // Throws Refusal when a column is not in the file, a new one would have the name of
  // another, or weight of evidence is asked for without a target of two classes.
  BinWriter(const MCBinModel::BinModel& model, const std::vector<std::size_t>& results,
            const BinColumns& columns, const ColumnNames& names, const MissingTexts& missingTexts,
            FieldMarks marks);

  // The record that the reader is at, the header first. The text lives until the next call.
  std::string_view WriteHeader(const CsvReader& reader);
  std::string_view WriteRecord(const CsvReader& reader);

  // What the user should know about values that were unknown categories.
  std::vector<std::string> GetNotes() const;

  // How many records got an infinite weight of evidence in which columns; nothing when none did.
  std::optional<std::string> DescribeInfinite() const;

  // The same of fields that stay empty for want of a weight of evidence or of a label.
  std::optional<std::string> DescribeEmpty() const;

 private:
  enum CellKind : std::size_t { kPlain, kInfinite, kEmpty, kCellKinds };

  struct Column {
    FieldCoder coder;
    const std::vector<double>& cutPoints;
    std::string header;              // ready to be written, as the cells
    std::vector<std::string> cells;  // by bin, then the one for missing
    std::vector<CellKind> kinds;     // by cell
    std::array<std::uint64_t, kCellKinds> counts{};
  };

  void AddColumn(const MCBinModel::BinModel& model, const MCBinModel::AttributeBins& bins,
                 const ColumnNames& names, const MissingTexts& missingTexts);
  std::vector<MCBinModel::BinValue> MakeValues(const MCBinModel::BinModel& model,
                                               const MCBinModel::AttributeBins& bins) const;
  std::vector<std::string> MakeCells(const std::vector<MCBinModel::BinValue>& values) const;
  static CellKind KindOf(const MCBinModel::BinValue& value);
  std::string ListCounts(CellKind kind) const;
  std::string Ready(const std::string& text) const;
  const std::string& CellOf(Column& column, const CsvReader& reader) const;
  template <typename CellText>
  std::string_view Write(const CsvReader& reader, CellText cellText);

  const BinColumns& fOptions;
  const FieldMarks fMarks;
  const bool fRightClosed;
  std::vector<Column> fColumns;
  std::vector<std::size_t> fColumnAt;  // by position in the file: index into fColumns
  CsvLine fLine;
};

}  // namespace MCBin
