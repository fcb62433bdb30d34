#include "csv/binwriter.h"

#include <fmt/format.h>

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <variant>

#include "binmodel/apply/binvalues.h"
#include "binmodel/model/binlookup.h"
#include "binmodel/model/refusal.h"
#include "binmodel/text/displaytext.h"
#include "binmodel/text/escape.h"
#include "binmodel/text/number.h"

namespace MCBin {

namespace {

constexpr std::size_t kNoColumn = static_cast<std::size_t>(-1);

}  // namespace

BinWriter::BinWriter(const MCBinModel::BinModel& model, const std::vector<std::size_t>& results,
                     const BinColumns& columns, const ColumnNames& names,
                     const MissingTexts& missingTexts, FieldMarks marks)
    : fOptions(columns),
      fMarks(marks),
      fRightClosed(model.settings.rightClosed),
      fColumnAt(names.GetCount(), kNoColumn),
      fLine(marks.delimiter) {
  for (const std::size_t index : results) {
    AddColumn(model, model.results[index], names, missingTexts);
  }
}

void BinWriter::AddColumn(const MCBinModel::BinModel& model, const MCBinModel::AttributeBins& bins,
                          const ColumnNames& names, const MissingTexts& missingTexts) {
  const MCBinModel::VariableInfo& attribute = model.GetAttribute(bins);
  const std::size_t position = names.Find(attribute.name);
  const std::string header = fOptions.replace ? attribute.name : attribute.name + fOptions.suffix;
  if (!fOptions.replace && names.Contains(header)) {
    throw MCBinModel::Refusal(
        MCBinModel::RefusalCode::kColumnTaken, {{}, attribute.name, header},
        fmt::format("there is a column {} already", MCBinModel::QuotedText(header)));
  }
  fColumnAt[position] = fColumns.size();
  const std::vector<MCBinModel::BinValue> values = MakeValues(model, bins);
  fColumns.push_back({FieldCoder(attribute, position, missingTexts),
                      bins.cutPoints,
                      Ready(header),
                      MakeCells(values),
                      {}});
  for (const MCBinModel::BinValue& value : values) fColumns.back().kinds.push_back(KindOf(value));
}

BinWriter::CellKind BinWriter::KindOf(const MCBinModel::BinValue& value) {
  if (std::holds_alternative<std::monostate>(value)) return kEmpty;
  const double* const number = std::get_if<double>(&value);
  return number != nullptr && std::isinf(*number) ? kInfinite : kPlain;
}

// By bin, then that of a missing value.
std::vector<MCBinModel::BinValue> BinWriter::MakeValues(
    const MCBinModel::BinModel& model, const MCBinModel::AttributeBins& bins) const {
  std::vector<MCBinModel::BinValue> values = MCBinModel::MakeBinValues(model, bins, fOptions.form);
  values.push_back(fOptions.missingText ? MCBinModel::BinValue(*fOptions.missingText)
                                        : MCBinModel::MakeMissingValue(model, bins, fOptions.form));
  return values;
}

std::vector<std::string> BinWriter::MakeCells(
    const std::vector<MCBinModel::BinValue>& values) const {
  struct Writer {
    const std::string missingText;
    const char decimal;
    std::string operator()(std::monostate) const { return missingText; }
    std::string operator()(std::int64_t index) const { return std::to_string(index); }
    std::string operator()(double number) const {
      std::string text = MCBinModel::FormatNumber(number);
      std::replace(text.begin(), text.end(), '.', decimal);
      return text;
    }
    std::string operator()(const std::string& text) const { return text; }
  };
  const Writer writer{fOptions.missingText.value_or(""), fMarks.decimal};
  std::vector<std::string> cells;
  cells.reserve(values.size());
  for (const MCBinModel::BinValue& value : values) {
    cells.push_back(Ready(std::visit(writer, value)));
  }
  return cells;
}

std::string BinWriter::Ready(const std::string& text) const {
  std::string field;
  MCBinModel::AppendField(field, text, false, fMarks.delimiter);
  return field;
}

const std::string& BinWriter::CellOf(Column& column, const CsvReader& reader) const {
  const double value = column.coder.Code(reader);
  const std::size_t cell = std::isnan(value)
                               ? column.cells.size() - 1
                               : MCBinModel::FindBin(column.cutPoints, value, fRightClosed);
  ++column.counts[column.kinds[cell]];
  return column.cells[cell];
}

template <typename CellText>
std::string_view BinWriter::Write(const CsvReader& reader, CellText cellText) {
  fLine.Clear();
  const std::vector<CsvField>& fields = reader.GetFields();
  for (std::size_t position = 0; position < fields.size(); ++position) {
    const bool replaced = fOptions.replace && fColumnAt[position] != kNoColumn;
    if (replaced) {
      fLine.AddReadyField(cellText(fColumns[fColumnAt[position]]));
    } else {
      fLine.AddField(fields[position]);
    }
  }
  if (!fOptions.replace) {
    for (Column& column : fColumns) fLine.AddReadyField(cellText(column));
  }
  return fLine.Finish();
}

std::string_view BinWriter::WriteHeader(const CsvReader& reader) {
  return Write(reader, [](const Column& column) -> const std::string& { return column.header; });
}

std::string_view BinWriter::WriteRecord(const CsvReader& reader) {
  return Write(reader,
               [&](Column& column) -> const std::string& { return CellOf(column, reader); });
}

std::vector<std::string> BinWriter::GetNotes() const {
  std::vector<std::string> notes;
  for (const Column& column : fColumns) {
    std::optional<std::string> unknown = column.coder.DescribeUnknown();
    if (unknown) notes.push_back(*std::move(unknown));
  }
  return notes;
}

// "2 records in a_bin, 1 records in b_bin"; empty when there are none.
std::string BinWriter::ListCounts(CellKind kind) const {
  constexpr std::size_t kMostNamed = 10;
  std::vector<std::string> counts;
  for (const Column& column : fColumns) {
    if (column.counts[kind] == 0) continue;
    counts.push_back(fmt::format("{} records in {}", column.counts[kind],
                                 MCBinModel::PrintableText(column.header)));
  }
  const bool namesAll = counts.size() <= kMostNamed;
  if (!namesAll) counts.resize(kMostNamed);
  return fmt::format("{}{}", fmt::join(counts, ", "), namesAll ? "" : " and more");
}

std::optional<std::string> BinWriter::DescribeInfinite() const {
  const std::string counts = ListCounts(kInfinite);
  if (counts.empty()) return std::nullopt;
  return "an infinite weight of evidence, as the bin lacks a class: " + counts;
}

std::optional<std::string> BinWriter::DescribeEmpty() const {
  const bool isIndex = fOptions.form == MCBinModel::BinForm::kIndex;
  const std::string counts = isIndex || fOptions.missingText ? "" : ListCounts(kEmpty);
  if (counts.empty()) return std::nullopt;
  const bool isLabel = fOptions.form == MCBinModel::BinForm::kLabel;
  return fmt::format("an empty field, as the bin file has no {} for these: {}",
                     isLabel ? "bin of missing values" : "weight of evidence", counts);
}

}  // namespace MCBin
