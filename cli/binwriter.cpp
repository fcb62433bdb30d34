#include "cli/binwriter.h"

#include <fmt/format.h>

#include <cmath>

#include "cli/binlookup.h"
#include "cli/binstatistics.h"
#include "cli/displaytext.h"
#include "cli/inputerror.h"
#include "cli/number.h"

namespace MCBin {

namespace {

constexpr std::size_t kNoColumn = static_cast<std::size_t>(-1);

}  // namespace

BinWriter::BinWriter(const BinModel& model, const std::vector<std::size_t>& results,
                     const ApplyOptions& options, const ColumnNames& names,
                     const MissingTexts& missingTexts, char delimiter)
    : fOptions(options),
      fDelimiter(delimiter),
      fRightClosed(model.options.rightClosed),
      fColumnAt(names.GetCount(), kNoColumn),
      fLine(delimiter) {
  for (const std::size_t index : results) {
    AddColumn(model, model.results[index], names, missingTexts);
  }
}

void BinWriter::AddColumn(const BinModel& model, const AttributeBins& bins,
                          const ColumnNames& names, const MissingTexts& missingTexts) {
  const VariableInfo& attribute = model.GetAttribute(bins);
  const std::size_t position = names.Find(attribute.name);
  const std::string header = fOptions.replace ? attribute.name : attribute.name + fOptions.suffix;
  if (!fOptions.replace && names.Contains(header)) {
    throw InputError(fmt::format(
        "there is a column {} already; choose another --suffix, or --replace the column {}",
        QuotedText(header), QuotedText(attribute.name)));
  }
  fColumnAt[position] = fColumns.size();
  fColumns.push_back({FieldCoder(attribute, position, missingTexts), bins.cutPoints, Ready(header),
                      MakeCells(model, bins)});
}

std::vector<std::string> BinWriter::MakeCells(const BinModel& model,
                                              const AttributeBins& bins) const {
  const bool asEvidence = fOptions.form == BinForm::kWeightOfEvidence;
  const VariableInfo* const target = model.GetTarget(bins);
  if (asEvidence && target == nullptr) {
    throw InputError("weight of evidence needs a target, and equal-frequency bins have none");
  }
  const auto evidence = asEvidence ? WeightsOfEvidence(bins, EventCategory(*target))
                                   : std::vector<std::optional<double>>();
  std::vector<std::string> cells;
  for (std::size_t bin = 0; bin <= bins.cutPoints.size(); ++bin) {
    switch (fOptions.form) {
      case BinForm::kIndex:
        cells.push_back(std::to_string(bin));
        break;
      case BinForm::kLabel:
        cells.push_back(BinLabel(model.GetAttribute(bins), bins.cutPoints, bin, fRightClosed));
        break;
      case BinForm::kWeightOfEvidence:
        const bool known = bin < evidence.size() && evidence[bin];
        cells.push_back(known ? FormatNumber(*evidence[bin]) : fOptions.missingText);
        break;
    }
  }
  cells.push_back(fOptions.missingText);
  for (std::string& cell : cells) cell = Ready(cell);
  return cells;
}

std::string BinWriter::Ready(const std::string& text) const {
  std::string field;
  AppendCsvField(field, text, false, fDelimiter);
  return field;
}

const std::string& BinWriter::CellOf(Column& column, const CsvReader& reader) const {
  const std::optional<double> value = column.coder.Code(reader);
  if (!value) return column.cells.back();
  return column.cells[FindBin(column.cutPoints, *value, fRightClosed)];
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
