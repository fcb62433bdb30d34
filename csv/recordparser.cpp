#include "csv/recordparser.h"

#include <fmt/format.h>

#include <string_view>
#include <utility>

#include "binmodel/model/refusal.h"
#include "csv/plaindecimal.h"

namespace MCBin {

namespace {

[[noreturn]] void Refuse(std::string place, const std::string& reason) {
  throw MCBinModel::Refusal(MCBinModel::RefusalCode::kInput, {std::move(place), {}, {}}, reason);
}

bool IsInNumbers(char delimiter) {
  return std::string_view("0123456789.-").find(delimiter) != std::string_view::npos;
}

}  // namespace

RecordParser::RecordParser(std::string name, char delimiter, const NumberFormat& numbers)
    : fSyntax(delimiter),
      fNumbers(numbers),
      fHasPlainDecimals(numbers.IsPlain() && !IsInNumbers(delimiter)),
      fRecord{std::move(name), 0, {}} {}

void RecordParser::SetText(char* begin, char* end, bool isLast) {
  fBegin = begin;
  fEnd = end;
  fIsLast = isLast;
}

RecordParser::Outcome RecordParser::Next() {
  do {
    const Outcome outcome = ParseRecord();
    if (outcome != Outcome::kRecord) return outcome;
  } while (fFieldCount != 1 && IsBlankLine());
  if (fFieldCount == 0) fFieldCount = fRecord.fields.size();
  CheckShape();
  return Outcome::kRecord;
}

bool RecordParser::IsBlankLine() const {
  const std::vector<CsvField>& fields = fRecord.fields;
  return fields.size() == 1 && !fields[0].quoted && MCBinModel::TrimBlanks(fields[0].text).empty();
}

void RecordParser::CheckShape() const {
  if (fRecord.fields.size() == fFieldCount) return;
  Refuse(fRecord.Where(),
         fmt::format("{} fields found, {} expected as in the header; check the delimiters "
                     "and quotes of this line",
                     fRecord.fields.size(), fFieldCount));
}

// Parses from fBegin. When the text ends within the record, nothing but the fields has
// changed, and the record is parsed anew once there is more.
RecordParser::Outcome RecordParser::ParseRecord() {
  if (fBegin == fEnd) return fIsLast ? Outcome::kEnd : Outcome::kNeedsMore;
  fRecord.fields.clear();
  fWithDoubledQuotes.clear();
  fLinesInRecord = 0;

  const char* at = fBegin;
  for (;;) {
    if (*at == '"') {
      at = ParseQuoted(at);
      if (at == nullptr) return Outcome::kNeedsMore;
    } else {
      at = ParseUnquoted(at);
    }
    if (*at == fSyntax.GetDelimiter()) {
      ++at;
      continue;
    }
    if (*at == '\n') return FinishRecord(at + 1);
    if (*at == '\r') {
      const bool lineFeedMayFollow = at + 1 == fEnd && !fIsLast;
      if (lineFeedMayFollow) return Outcome::kNeedsMore;
      return FinishRecord(at[1] == '\n' ? at + 2 : at + 1);
    }
    if (at != fEnd) RefuseNul(fNextLine + fLinesInRecord);
    return fIsLast ? FinishRecord(at) : Outcome::kNeedsMore;
  }
}

// Returns the end of the field.
const char* RecordParser::ParseUnquoted(const char* begin) {
  PlainDecimal decimal;
  const char* end = begin;
  if (fHasPlainDecimals) end = decimal.Read(begin);
  const bool isDecimal = fSyntax.EndsField(*end);
  if (!isDecimal) end = fSyntax.FindFieldEnd(end);
  fRecord.fields.push_back(
      MakeField({begin, static_cast<std::size_t>(end - begin)}, false, fNumbers));
  if (isDecimal && fHasPlainDecimals) fRecord.fields.back().decimal = decimal.GetValue();
  return end;
}

// Returns what follows the closing quote, or null when the text ends before that is known.
const char* RecordParser::ParseQuoted(const char* open) {
  const CsvSyntax::Quoted field = fSyntax.ReadQuoted(open, fEnd);
  const std::uint64_t lineOfQuote = fNextLine + fLinesInRecord;
  fLinesInRecord += field.lineEnds;
  switch (field.trouble) {
    case CsvSyntax::Trouble::kNone:
      break;
    case CsvSyntax::Trouble::kTextAfterQuote:
      Refuse(fRecord.Where(fNextLine + fLinesInRecord),
             "text after a closing quote; a quote inside a quoted field is written twice");
    case CsvSyntax::Trouble::kNul:
      RefuseNul(fNextLine + fLinesInRecord);
    case CsvSyntax::Trouble::kOpen:
      if (!fIsLast) return nullptr;
      Refuse(fRecord.Where(lineOfQuote), "the quote opened here is never closed");
  }
  if (field.hasDoubledQuotes) fWithDoubledQuotes.push_back(fRecord.fields.size());
  const char* const begin = open + 1;
  fRecord.fields.push_back(
      MakeField({begin, static_cast<std::size_t>(field.end - begin)}, true, fNumbers));
  return field.next;
}

RecordParser::Outcome RecordParser::FinishRecord(const char* next) {
  fBegin += next - fBegin;
  fRecord.line = fNextLine;
  fNextLine += 1 + fLinesInRecord;
  if (!fWithDoubledQuotes.empty()) UndoubleQuotes();
  return Outcome::kRecord;
}

// In place: the record will not be parsed again.
void RecordParser::UndoubleQuotes() {
  for (const std::size_t index : fWithDoubledQuotes) {
    std::string_view& text = fRecord.fields[index].text;
    char* const begin = fBegin - (fBegin - text.data());
    text = {begin, CsvSyntax::Undouble(text, begin)};
  }
}

void RecordParser::RefuseNul(std::uint64_t line) const {
  Refuse(fRecord.Where(line), "a NUL byte; this is a binary file, not CSV text");
}

}  // namespace MCBin
