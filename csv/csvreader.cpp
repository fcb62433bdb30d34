#include "csv/csvreader.h"

#include <fmt/format.h>

#include <algorithm>
#include <utility>

#include "binmodel/model/refusal.h"
#include "csv/plaindecimal.h"
#include "io/inputstream.h"

namespace MCBin {

namespace {

constexpr std::size_t kChunkBytes = std::size_t{1} << 20;

std::size_t IndexOf(char c) { return static_cast<unsigned char>(c); }

[[noreturn]] void Refuse(std::string place, const std::string& reason) {
  throw MCBinModel::Refusal(MCBinModel::RefusalCode::kInput, {std::move(place), {}, {}}, reason);
}

}  // namespace

CsvReader::CsvReader(int file, std::string name, char delimiter, const NumberFormat& numbers)
    : fFile(file),
      fName(std::move(name)),
      fDelimiter(delimiter),
      fIsDelimiterInNumbers(std::string_view("0123456789.-").find(delimiter) !=
                            std::string_view::npos),
      fNumbers(numbers) {
  for (const char c : {delimiter, '\n', '\r', '\0'}) fIsSpecial[IndexOf(c)] = true;
  fCapacity = kChunkBytes;
  fBuffer = std::make_unique<char[]>(fCapacity + 1);
  fBegin = fEnd = fBuffer.get();
}

std::string CsvReader::Where(std::uint64_t line) const { return fmt::format("{}:{}", fName, line); }

bool CsvReader::Next() {
  do {
    if (!NextRecord()) return false;
  } while (fFieldCount != 1 && IsBlankLine());
  if (fFieldCount == 0) fFieldCount = fFields.size();
  CheckShape();
  return true;
}

bool CsvReader::NextRecord() {
  for (;;) {
    const Outcome outcome = ParseRecord();
    if (outcome == Outcome::kRecord) return true;
    if (outcome == Outcome::kEnd) return false;
    Refill();
  }
}

bool CsvReader::IsBlankLine() const {
  return fFields.size() == 1 && !fFields[0].quoted &&
         MCBinModel::TrimBlanks(fFields[0].text).empty();
}

void CsvReader::CheckShape() const {
  if (fFields.size() == fFieldCount) return;
  Refuse(Where(), fmt::format("{} fields found, {} expected as in the header; check the delimiters "
                              "and quotes of this line",
                              fFields.size(), fFieldCount));
}

// Parses from fBegin. When the data end within the record, nothing but the fields has
// changed, and the record is parsed anew once there is more.
CsvReader::Outcome CsvReader::ParseRecord() {
  if (fBegin == fEnd) return fAtFileEnd ? Outcome::kEnd : Outcome::kNeedsMore;
  fFields.clear();
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
    if (*at == fDelimiter) {
      ++at;
      continue;
    }
    if (*at == '\n') return FinishRecord(at + 1);
    if (*at == '\r') {
      const bool lineFeedMayFollow = at + 1 == fEnd && !fAtFileEnd;
      if (lineFeedMayFollow) return Outcome::kNeedsMore;
      return FinishRecord(at[1] == '\n' ? at + 2 : at + 1);
    }
    if (at != fEnd) RefuseNul();
    return fAtFileEnd ? FinishRecord(at) : Outcome::kNeedsMore;
  }
}

// Returns the end of the field.
const char* CsvReader::ParseUnquoted(const char* begin) {
  PlainDecimal decimal;
  const char* at = begin;
  if (!fIsDelimiterInNumbers && fNumbers.IsPlain()) at = decimal.Read(begin);
  if (fIsSpecial[IndexOf(*at)]) {
    AddField(begin, at, false, decimal.GetValue());
    return at;
  }
  while (!fIsSpecial[IndexOf(*at)]) ++at;
  AddField(begin, at, false);
  return at;
}

// Returns what follows the closing quote, or null when the data end before that is known.
const char* CsvReader::ParseQuoted(const char* open) {
  const char* const begin = open + 1;
  const std::uint64_t lineOfQuote = fNextLine + fLinesInRecord;
  bool doubled = false;
  for (const char* at = begin;; ++at) {
    switch (*at) {
      case '"':
        if (at[1] == '"') {
          doubled = true;
          ++at;
          continue;
        }
        if (at + 1 != fEnd && !fIsSpecial[IndexOf(at[1])]) {
          Refuse(Where(fNextLine + fLinesInRecord),
                 "text after a closing quote; a quote inside a quoted field is written twice");
        }
        if (doubled) fWithDoubledQuotes.push_back(fFields.size());
        AddField(begin, at, true);
        return at + 1;
      case '\n':
        ++fLinesInRecord;
        continue;
      case '\r':
        if (at[1] != '\n') ++fLinesInRecord;  // CRLF counts at its LF
        continue;
      case '\0':
        if (at != fEnd) RefuseNul();
        if (!fAtFileEnd) return nullptr;
        Refuse(Where(lineOfQuote), "the quote opened here is never closed");
      default:
        continue;
    }
  }
}

void CsvReader::AddField(const char* begin, const char* end, bool quoted,
                         std::optional<double> decimal) {
  fFields.push_back({{begin, static_cast<std::size_t>(end - begin)}, quoted, decimal});
  if (fNumbers.IsPlain()) return;
  CsvField& field = fFields.back();
  const MCBinModel::ParsedNumber number = ParseNumber(field.text, fNumbers);
  if (number.kind == MCBinModel::NumberKind::kNumber) field.decimal = number.value;
  field.isText = number.kind == MCBinModel::NumberKind::kText;
}

CsvReader::Outcome CsvReader::FinishRecord(const char* next) {
  fBegin += next - fBegin;
  fLine = fNextLine;
  fNextLine += 1 + fLinesInRecord;
  if (!fWithDoubledQuotes.empty()) UndoubleQuotes();
  return Outcome::kRecord;
}

// In place: the record will not be parsed again.
void CsvReader::UndoubleQuotes() {
  for (const std::size_t index : fWithDoubledQuotes) {
    std::string_view& text = fFields[index].text;
    char* const begin = fBuffer.get() + (text.data() - fBuffer.get());
    char* to = begin;
    for (std::size_t from = 0; from < text.size(); ++from) {
      *to++ = text[from];
      if (text[from] == '"') ++from;
    }
    text = {begin, static_cast<std::size_t>(to - begin)};
  }
}

void CsvReader::Refill() {
  MakeRoom();
  const std::size_t room = fCapacity - static_cast<std::size_t>(fEnd - fBuffer.get());
  const bool atStart = fBytesRead == 0;
  std::size_t got = ReadMore(room);
  if (atStart && Unpacker::IsPacked({fEnd, got})) {
    fUnpacker = std::make_unique<Unpacker>(fFile, fName, std::string_view(fEnd, got));
    got = ReadMore(room);
  }

  fAtFileEnd = got == 0;
  fBytesRead += got;
  fEnd += got;
  *fEnd = '\0';
  if (atStart) {
    CheckFileKind();
    const bool hasMark =
        std::string_view(fBegin, static_cast<std::size_t>(fEnd - fBegin)).substr(0, 3) ==
        "\xEF\xBB\xBF";
    if (hasMark) fBegin += 3;
  }
}

// At the front enough to tell what kind of file it is, as a pipe may come byte by byte.
std::size_t CsvReader::ReadMore(std::size_t room) {
  constexpr std::size_t kEnoughAtFront = 8;
  const std::size_t enough = fBytesRead == 0 ? kEnoughAtFront : 1;
  std::size_t got = 0;
  while (got < enough) {
    char* const to = fEnd + got;
    const std::size_t more = fUnpacker ? fUnpacker->Read(to, room - got)
                                       : InputStream::Read(fFile, fName, to, room - got);
    if (more == 0) break;
    got += more;
  }
  return got;
}

// Moves what is not parsed yet to the front; a record that fills the buffer gets a larger one.
void CsvReader::MakeRoom() {
  const auto pending = static_cast<std::size_t>(fEnd - fBegin);
  if (pending >= kMaxRecordBytes) {
    Refuse(Where(fNextLine), fmt::format("this record is longer than {} MiB; is a closing quote "
                                         "missing, or is this not a CSV file?",
                                         kMaxRecordBytes >> 20));
  }
  if (pending * 2 > fCapacity) {
    const std::size_t capacity = fCapacity * 2;
    auto larger = std::make_unique<char[]>(capacity + 1);
    std::copy(fBegin, fEnd, larger.get());
    fBuffer = std::move(larger);
    fCapacity = capacity;
  } else {
    std::copy(fBegin, fEnd, fBuffer.get());
  }
  fBegin = fBuffer.get();
  fEnd = fBegin + pending;
  *fEnd = '\0';
}

void CsvReader::CheckFileKind() const {
  const std::string_view start(fBegin, static_cast<std::size_t>(fEnd - fBegin));
  const auto startsWith = [start](std::string_view magic) {
    return start.substr(0, magic.size()) == magic;
  };
  if (startsWith("\xFF\xFE") || startsWith("\xFE\xFF")) {
    Refuse(fName, "this is UTF-16 text; convert it first: iconv -f UTF-16 -t UTF-8");
  }
  const bool packed = startsWith("PK\x03\x04") || startsWith("BZh91AY") ||
                      startsWith(
                          "\xFD"
                          "7zXZ");
  if (packed) {
    Refuse(fName,
           "this is a packed file or a spreadsheet, not CSV text; unpack it (unzip -p FILE | mcbin "
           "...) or export it as CSV first");
  }
}

void CsvReader::RefuseNul() const {
  Refuse(Where(fNextLine + fLinesInRecord), "a NUL byte; this is a binary file, not CSV text");
}

}  // namespace MCBin
