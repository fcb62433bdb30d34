#include "csv/csvreader.h"

#include <fmt/format.h>

#include <algorithm>
#include <string_view>
#include <utility>

#include "binmodel/model/refusal.h"
#include "io/inputstream.h"

namespace MCBin {

namespace {

constexpr std::size_t kEnoughAtFront = 8;

// Records of which a chunk holds few are read in larger blocks, up to so many chunks.
constexpr std::uint64_t kFewRecords = 64;
constexpr std::size_t kLargestInChunks = 16;

[[noreturn]] void Refuse(std::string place, const std::string& reason) {
  throw MCBinModel::Refusal(MCBinModel::RefusalCode::kInput, {std::move(place), {}, {}}, reason);
}

}  // namespace

CsvReader::CsvReader(int file, std::string name, char delimiter, const NumberFormat& numbers,
                     std::size_t chunkBytes)
    : fFile(file),
      fBuffer(TextBuffer::OfCapacity(std::max(chunkBytes, kEnoughAtFront))),
      fLargestBlock(fBuffer.capacity * kLargestInChunks),
      fEnd(fBuffer.data.get()),
      fParser(std::move(name), delimiter, numbers) {
  *fEnd = '\0';
  fParser.SetText(fEnd, fEnd, false);
}

bool CsvReader::Next() {
  for (;;) {
    const RecordParser::Outcome outcome = fParser.Next();
    if (outcome != RecordParser::Outcome::kNeedsMore) {
      return outcome == RecordParser::Outcome::kRecord;
    }
    Refill();
  }
}

bool CsvReader::TakeBlock(CsvBlock& block) {
  if (GetPendingBytes() > fLargestBlock) return false;
  ReadAhead();
  char* const begin = fParser.GetBegin();
  const auto size =
      fAtFileEnd ? fEnd - begin : fParser.GetSyntax().FindLastRecordEnd(begin, fEnd) - begin;
  if (size == 0) return false;
  block.firstLine = fParser.GetNextLine();
  block.lineEnds = CsvSyntax::CountLineEnds(begin, begin + size);

  // The block takes the buffer, and what is left goes to the one that it had.
  const bool hasFewRecords = block.lineEnds < kFewRecords && !fAtFileEnd;
  const std::size_t capacity =
      hasFewRecords ? std::min(fBuffer.capacity * 2, fLargestBlock) : fBuffer.capacity;
  if (block.buffer.capacity != capacity) block.buffer = TextBuffer::OfCapacity(capacity);
  std::swap(fBuffer, block.buffer);
  block.begin = begin;
  block.end = begin + size;
  KeepRest(block.end);
  *block.end = '\0';
  fParser.GoToLine(block.firstLine + block.lineEnds);
  return true;
}

RecordParser CsvReader::MakeParser(const CsvBlock& block) const {
  RecordParser parser = fParser;
  parser.GoToLine(block.firstLine);
  parser.SetText(block.begin, block.end, true);
  return parser;
}

std::size_t CsvReader::GetPendingBytes() const {
  return static_cast<std::size_t>(fEnd - fParser.GetBegin());
}

std::size_t CsvReader::GetRoom() const {
  return fBuffer.capacity - static_cast<std::size_t>(fEnd - fBuffer.data.get());
}

// What begins at `rest`, which may be in another buffer.
void CsvReader::KeepRest(const char* rest) {
  char* const begin = fBuffer.data.get();
  fEnd = std::copy(rest, static_cast<const char*>(fEnd), begin);
  *fEnd = '\0';
  fParser.SetText(begin, fEnd, fAtFileEnd);
}

// Until the buffer is full. What cannot be read is told once all that was read before is taken.
void CsvReader::ReadAhead() {
  if (fBuffer.capacity > fLargestBlock) MoveTo(fLargestBlock);
  try {
    while (!fAtFileEnd && !fFailure && GetRoom() > 0) ReadOn();
  } catch (const MCBinModel::Refusal&) {
    fFailure = std::current_exception();
  }
}

void CsvReader::Refill() {
  if (fFailure) std::rethrow_exception(fFailure);
  MakeRoom();
  ReadOn();
}

void CsvReader::ReadOn() {
  const bool atStart = fBytesRead == 0;
  std::size_t got = ReadMore();
  if (atStart && Unpacker::IsPacked({fEnd, got})) {
    fUnpacker = std::make_unique<Unpacker>(fFile, GetName(), std::string_view(fEnd, got));
    got = ReadMore();
  }

  fAtFileEnd = got == 0;
  fBytesRead += got;
  fEnd += got;
  *fEnd = '\0';
  char* begin = fParser.GetBegin();
  if (atStart) {
    const std::string_view start(begin, GetPendingBytes());
    CheckFileKind(start);
    if (start.substr(0, 3) == "\xEF\xBB\xBF") begin += 3;
  }
  fParser.SetText(begin, fEnd, fAtFileEnd);
}

// At the front enough to tell what kind of file it is, as a pipe may come byte by byte.
std::size_t CsvReader::ReadMore() {
  const std::size_t room = GetRoom();
  const std::size_t enough = fBytesRead == 0 ? kEnoughAtFront : 1;
  std::size_t got = 0;
  while (got < enough) {
    char* const to = fEnd + got;
    const std::size_t more = fUnpacker ? fUnpacker->Read(to, room - got)
                                       : InputStream::Read(fFile, GetName(), to, room - got);
    if (more == 0) break;
    got += more;
  }
  return got;
}

// Moves what is not parsed yet to the front; a record that fills the buffer gets a larger one.
void CsvReader::MakeRoom() {
  const std::size_t pending = GetPendingBytes();
  if (pending >= kMaxRecordBytes) {
    const CsvRecord& record = GetRecord();
    Refuse(record.Where(fParser.GetNextLine()),
           fmt::format("this record is longer than {} MiB; is a closing quote "
                       "missing, or is this not a CSV file?",
                       kMaxRecordBytes >> 20));
  }
  if (pending * 2 > fBuffer.capacity) {
    MoveTo(fBuffer.capacity * 2);
  } else {
    KeepRest(fParser.GetBegin());
  }
}

void CsvReader::MoveTo(std::size_t capacity) {
  TextBuffer other = TextBuffer::OfCapacity(capacity);
  std::swap(fBuffer, other);
  KeepRest(fParser.GetBegin());
}

void CsvReader::CheckFileKind(std::string_view start) const {
  const auto startsWith = [start](std::string_view magic) {
    return start.substr(0, magic.size()) == magic;
  };
  if (startsWith("\xFF\xFE") || startsWith("\xFE\xFF")) {
    Refuse(GetName(), "this is UTF-16 text; convert it first: iconv -f UTF-16 -t UTF-8");
  }
  const bool packed = startsWith("PK\x03\x04") || startsWith("BZh91AY") ||
                      startsWith(
                          "\xFD"
                          "7zXZ");
  if (packed) {
    Refuse(GetName(),
           "this is a packed file or a spreadsheet, not CSV text; unpack it (unzip -p FILE | mcbin "
           "...) or export it as CSV first");
  }
}

}  // namespace MCBin
