#include "csv/binwriter.h"

#include <fmt/format.h>

#include <cmath>
#include <cstdint>
#include <variant>

#include "binmodel/apply/binvalues.h"
#include "binmodel/model/binlookup.h"
#include "binmodel/model/refusal.h"
#include "binmodel/text/displaytext.h"
#include "binmodel/text/number.h"

namespace MCBin {

namespace {

constexpr std::size_t kNoColumn = static_cast<std::size_t>(-1);

}  // namespace

BinWriter::BinWriter(const MCBinModel::BinModel& model, const std::vector<std::size_t>& results,
                     const BinColumns& columns, const ColumnNames& names,
                     const MissingTexts& missingTexts, char delimiter)
    : fOptions(columns),
      fDelimiter(delimiter),
      fRightClosed(model.settings.rightClosed),
      fColumnAt(names.GetCount(), kNoColumn),
      fLine(delimiter) {
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
  fColumns.push_back({FieldCoder(attribute, position, missingTexts), bins.cutPoints, Ready(header),
                      MakeCells(model, bins)});
}

std::vector<std::string> BinWriter::MakeCells(const MCBinModel::BinModel& model,
                                              const MCBinModel::AttributeBins& bins) const {
  struct Writer {
    const std::string& missingText;
    std::string operator()(std::monostate) const { return missingText; }
    std::string operator()(std::int64_t index) const { return std::to_string(index); }
    std::string operator()(double number) const { return MCBinModel::FormatNumber(number); }
    std::string operator()(const std::string& text) const { return text; }
  };
  std::vector<std::string> cells;
  for (const MCBinModel::BinValue& value : MCBinModel::MakeBinValues(model, bins, fOptions.form)) {
    cells.push_back(Ready(std::visit(Writer{fOptions.missingText}, value)));
  }
  cells.push_back(Ready(fOptions.missingText));
  return cells;
}

std::string BinWriter::Ready(const std::string& text) const {
  std::string field;
  AppendCsvField(field, text, false, fDelimiter);
  return field;
}

const std::string& BinWriter::CellOf(Column& column, const CsvReader& reader) const {
  const double value = column.coder.Code(reader);
  if (std::isnan(value)) return column.cells.back();
  return column.cells[MCBinModel::FindBin(column.cutPoints, value, fRightClosed)];
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

}  // namespace MCBin
