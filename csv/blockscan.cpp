#include "csv/blockscan.h"

#include <algorithm>
#include <limits>
#include <string_view>

#include "binmodel/model/refusal.h"
#include "binmodel/text/number.h"
#include "common/missing.h"
#include "csv/plaindecimal.h"

namespace MCBin {

using MCBinModel::NumberKind;

BlockScan::BlockScan(const ScanPlan& plan)
    : fPlan(plan),
      fFileColumns(plan.requestAt.size()),
      fColumns(plan.requests.size()),
      fIsDecided(plan.requests.size(), 0) {
  for (std::size_t position = 0; position < fFileColumns.size(); ++position) {
    const std::size_t request = plan.requestAt[position];
    if (request == ScanPlan::kNotRead) continue;
    const ColumnRequest& asked = plan.requests[request];
    const bool isOther = asked.use == ColumnUse::kWeight || asked.MayBeCategorical();
    fFileColumns[position].use = isOther ? Use::kOther : Use::kNumbers;
    fFileColumns[position].request = request;
    if (isOther) fOthers.push_back({request, {}, {}});
  }
  if (!plan.hasPlainDecimals) return;
  for (const char c : std::string_view("-.0123456789")) {
    fBeginsDecimal[static_cast<unsigned char>(c)] = !plan.missingTexts.MayBegin(c);
  }
}

void BlockScan::SetKnown(const std::vector<ColumnScan>& columns) {
  for (std::size_t i = 0; i < columns.size(); ++i) fIsDecided[i] = columns[i].IsDecided();
}

bool BlockScan::Scan(const CsvBlock& block) {
  Prepare(block);
  const char* at = block.begin;
  while (at != nullptr && at != block.end) {
    const char* const next = PassBlankLine(at);
    at = next == at ? ScanRecord(at) : next;
    ++fLine;
  }
  return at != nullptr;
}

// An odd number of cache lines for a column, as in ValueFile.
void BlockScan::Prepare(const CsvBlock& block) {
  constexpr std::size_t kValuesPerLine = 8;
  const std::size_t mostRecords = block.lineEnds + 1;
  fStride = (mostRecords / kValuesPerLine / 2 * 2 + 3) * kValuesPerLine;
  const std::size_t size = fStride * fPlan.valueColumnCount;
  if (fCapacity < size) {
    fCapacity = 0;
    fValues = std::make_unique_for_overwrite<double[]>(size);
    fCapacity = size;
  }
  for (Column& column : fFileColumns) {
    if (column.use == Use::kNone) continue;
    column.values = fValues.get() + column.request * fStride;
    column.later = &fColumns[column.request];
    *column.later = {};
  }
  fWeights.clear();
  if (fPlan.weights != nullptr) fWeightCoder.emplace(fPlan.weights->GetWeight());
  fEnd = block.end;
  fLine = fPlan.linesBefore + block.firstLine;
  fRow = 0;
  fRecordCount = 0;
}

// Returns `at` when the line is not blank. In a file of one column it is a record.
const char* BlockScan::PassBlankLine(const char* at) const {
  if (fFileColumns.size() == 1) return at;
  const auto isBlank = [delimiter = fPlan.syntax.GetDelimiter()](char c) {
    return (c == ' ' || c == '\t') && c != delimiter;
  };
  const char* end = at;
  while (isBlank(*end)) ++end;
  const bool isLineEnd = *end == '\n' || *end == '\r' || end == fEnd;
  return isLineEnd ? PassLineEnd(end) : at;
}

// Null when none is there.
const char* BlockScan::PassLineEnd(const char* at) const {
  if (*at == '\n') return at + 1;
  if (*at == '\r') return at[1] == '\n' ? at + 2 : at + 1;
  return at == fEnd ? at : nullptr;
}

// Returns what follows the record, or null.
const char* BlockScan::ScanRecord(const char* at) {
  fLinesInRecord = 0;
  fOtherCount = 0;
  const char delimiter = fPlan.syntax.GetDelimiter();
  const Column* const last = &fFileColumns.back();
  for (const Column* column = fFileColumns.data();; ++column, ++at) {
    at = ScanField(*column, at);
    if (at == nullptr) return nullptr;
    const bool isLast = *at != delimiter;
    if (isLast != (column == last)) return nullptr;
    if (isLast) break;
  }
  if (!FinishRecord()) return nullptr;
  fLine += fLinesInRecord;
  return PassLineEnd(at);
}

// Returns the end of the field, or null.
const char* BlockScan::ScanField(const Column& column, const char* at) {
  if (column.use == Use::kNumbers && fBeginsDecimal[static_cast<unsigned char>(*at)]) {
    PlainDecimal decimal;
    const char* const end = decimal.Read(at);
    const std::optional<double> value = decimal.GetValue();
    if (value && fPlan.syntax.EndsField(*end)) {
      column.values[fRow] = *value;
      ++column.later->numberCount;
      if (decimal.HasDecimals()) {
        column.later->numbers.Add(*value, {at, static_cast<std::size_t>(end - at)});
      }
      return end;
    }
  }
  if (column.use == Use::kOther) {
    Other& other = fOthers[fOtherCount++];
    return ReadField(at, other.field, other.undoubled);
  }
  CsvField field{};
  const char* const end = ReadField(at, field, fUndoubled);
  if (end == nullptr || column.use == Use::kNone) return end;
  return AddNumberField(column, field) ? end : nullptr;
}

const char* BlockScan::ReadField(const char* at, CsvField& field, std::string& undoubled) {
  if (*at != '"') {
    const char* const end = fPlan.syntax.FindFieldEnd(at);
    field = MakeField({at, static_cast<std::size_t>(end - at)}, false, fPlan.numbers);
    return end;
  }
  const CsvSyntax::Quoted quoted = fPlan.syntax.ReadQuoted(at, fEnd);
  if (quoted.trouble != CsvSyntax::Trouble::kNone) return nullptr;
  fLinesInRecord += quoted.lineEnds;
  std::string_view text(at + 1, static_cast<std::size_t>(quoted.end - (at + 1)));
  field = MakeField(text, true, fPlan.numbers);
  if (quoted.hasDoubledQuotes) {
    undoubled.resize(text.size());
    undoubled.resize(CsvSyntax::Undouble(text, undoubled.data()));
    field.text = undoubled;
  }
  return quoted.next;
}

bool BlockScan::AddNumberField(const Column& column, const CsvField& field) {
  double& value = column.values[fRow];
  value = MCMV::Missing();
  if (fPlan.missingTexts.IsMissing(field)) return true;
  const MCBinModel::ParsedNumber number = ParseNumber(field);
  if (number.kind == NumberKind::kNumber) {
    value = number.value;
    ++column.later->numberCount;
    column.later->numbers.Add(value, field.text);
    return true;
  }
  if (number.kind == NumberKind::kText &&
      fPlan.requests[column.request].kind == KindRequest::kContinuous) {
    return false;
  }
  value = OthersOf(column.request).Add(field, fLine, true).ifNumeric;
  return true;
}

bool BlockScan::FinishRecord() {
  ++fRecordCount;
  bool counts = true;
  for (std::size_t i = 0; i < fOtherCount; ++i) {
    const std::size_t request = fOthers[i].request;
    if (fPlan.requests[request].use != ColumnUse::kWeight) continue;
    const MCBinModel::ParsedNumber number = fPlan.weights->Parse(fOthers[i].field);
    if (number.kind == NumberKind::kText || number.kind == NumberKind::kInfinite) return false;
    const double weight = number.kind == NumberKind::kNumber
                              ? number.value
                              : std::numeric_limits<double>::quiet_NaN();
    try {
      counts = fWeightCoder->Code(weight).has_value();
    } catch (const MCBinModel::Refusal&) {
      return false;
    }
    fWeights.push_back(weight);
    fValues[request * fStride + fRow] = weight;
  }
  for (std::size_t i = 0; i < fOtherCount; ++i) {
    const bool isWeight = fPlan.requests[fOthers[i].request].use == ColumnUse::kWeight;
    if (!isWeight) AddOther(fOthers[i], counts);
  }
  if (counts) ++fRow;
  return true;
}

void BlockScan::AddOther(const Other& other, bool counts) {
  ColumnScan& column = OthersOf(other.request);
  const ColumnScan::Value value = fPlan.missingTexts.IsMissing(other.field)
                                      ? column.GetMissing()
                                      : column.Add(other.field, fLine, counts);
  fValues[other.request * fStride + fRow] = value.ifNumeric;
  fValues[fPlan.textColumns[other.request] * fStride + fRow] = value.ifTexts;
}

ColumnScan& BlockScan::OthersOf(std::size_t request) {
  std::unique_ptr<ColumnScan>& others = fColumns[request].others;
  if (!others) {
    others = std::make_unique<ColumnScan>(fPlan.requests[request], fIsDecided[request] != 0);
  }
  return *others;
}

void BlockScan::Recode(std::size_t valueColumn, const std::vector<double>& codes) {
  bool isSame = true;
  for (std::size_t code = 0; code < codes.size(); ++code) {
    isSame = isSame && codes[code] == static_cast<double>(code);
  }
  if (isSame) return;
  double* const values = fValues.get() + valueColumn * fStride;
  for (std::size_t row = 0; row < fRow; ++row) {
    if (values[row] >= 0.0) values[row] = codes[static_cast<std::size_t>(values[row])];
  }
}

}  // namespace MCBin
