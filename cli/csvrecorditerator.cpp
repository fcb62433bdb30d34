#include "cli/csvrecorditerator.h"

#include <fmt/format.h>

#include "cli/inputerror.h"
#include "cli/number.h"
#include "common/missing.h"

namespace MCBin {

namespace {

constexpr double kNoCategory = -1.0;

}  // namespace

CsvRecordIterator::CsvRecordIterator(CsvReader& reader, const InputVariables& variables,
                                     const MissingTexts& missingTexts, std::uint64_t recordCount)
    : fReader(reader),
      fMissingTexts(missingTexts),
      fRecordCount(recordCount),
      fRecord(variables.positions.size()) {
  for (std::size_t i = 0; i < variables.positions.size(); ++i) {
    const IBINEncoder* const encoder = variables.list.GetEncoderAt(static_cast<int>(i));
    fColumns.push_back({variables.positions[i], dynamic_cast<const BINCatNumEncoder*>(encoder),
                        dynamic_cast<const BINStringEncoder*>(encoder)});
  }
  fReader.Rewind();
  fReader.Next();
}

bool CsvRecordIterator::HasMore() {
  if (!fHasRecord && !fAtEnd) ReadRecord();
  return fHasRecord;
}

const MCCommon::Record* CsvRecordIterator::Next() {
  if (!HasMore()) return nullptr;
  fHasRecord = false;
  return &fRecord;
}

void CsvRecordIterator::ReadRecord() {
  try {
    fHasRecord = fReader.Next();
    fAtEnd = !fHasRecord;
    fRecordsRead += fHasRecord ? 1 : 0;
    if (fRecordsRead > fRecordCount || (fAtEnd && fRecordsRead != fRecordCount)) {
      throw InputError(
          fmt::format("{}: the file changed while it was read; run again", fReader.GetName()));
    }
    if (fAtEnd) return;
    for (std::size_t i = 0; i < fColumns.size(); ++i) {
      fRecord[i] = Code(fColumns[i], fReader.GetFields()[fColumns[i].position]);
    }
  } catch (...) {
    fHasRecord = false;
    fFailure = std::current_exception();
    throw;
  }
}

double CsvRecordIterator::Code(const Column& column, const CsvField& field) {
  const bool categorical = column.numbers != nullptr || column.texts != nullptr;
  const double missing = categorical ? kNoCategory : MCMV::Missing();
  if (fMissingTexts.IsMissing(field)) return missing;
  if (column.texts != nullptr) {
    fText.assign(field.text);
    return column.texts->EncodeConst(fText);
  }
  const ParsedNumber number = ParseNumber(field.text);
  if (number.kind != NumberKind::kNumber) return missing;
  return column.numbers != nullptr ? column.numbers->EncodeConst(number.value) : number.value;
}

void CsvRecordIterator::RethrowFailure() const {
  if (fFailure) std::rethrow_exception(fFailure);
}

}  // namespace MCBin
