// Any bytes as a CSV file: read whole, in small pieces and as written anew, the records are the
// same.

#include <fcntl.h>
#include <sys/mman.h>
#include <unistd.h>

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "binmodel/model/refusal.h"
#include "binmodel/text/number.h"
#include "csv/csvreader.h"
#include "fuzz/require.h"
#include "io/filedescriptor.h"
#include "io/outputfile.h"

namespace {

using MCBin::CsvReader;
using MCBin::FileDescriptor;

constexpr std::size_t kMostPieces = 16;  // a pipe takes no more without a reader
constexpr std::size_t kPieceBytes = 4096;
constexpr std::size_t kFirstBytes = 8;  // tell the kind of the file, at once

// (text, quoted) of every field.
using Fields = std::vector<std::pair<std::string, bool>>;

struct Content {
  std::vector<Fields> records;
  std::string refusal;  // why reading ended early

  bool operator==(const Content&) const = default;
};

Content ReadAll(CsvReader& reader) {
  Content content;
  try {
    while (reader.Next()) {
      Fields& fields = content.records.emplace_back();
      for (const MCBin::CsvField& field : reader.GetFields()) {
        fields.emplace_back(field.text, field.quoted);
        const MCBinModel::ParsedNumber number = MCBinModel::ParseNumber(field.text);
        Require(!field.decimal || (number.kind == MCBinModel::NumberKind::kNumber &&
                                   number.value == *field.decimal),
                "a decimal read in passing has its value");
      }
    }
  } catch (const MCBinModel::Refusal& error) {
    content.refusal = error.what();
  }
  return content;
}

Content ReadWhole(std::string_view text, char delimiter) {
  const FileDescriptor file(memfd_create("input", MFD_CLOEXEC));
  Require(MCBin::WriteAll(file.Get(), text) && lseek(file.Get(), 0, SEEK_SET) == 0,
          "there is memory for the input");
  CsvReader reader(file.Get(), "input", delimiter);
  return ReadAll(reader);
}

// One piece with every read.
Content ReadInPieces(std::string_view text, char delimiter, std::size_t pieceBytes) {
  int ends[2];
  Require(pipe2(ends, O_CLOEXEC | O_DIRECT) == 0, "there are descriptors for a pipe");
  const FileDescriptor out(ends[0]);
  FileDescriptor in(ends[1]);
  for (std::size_t begin = 0, length = kFirstBytes; begin < text.size(); begin += length) {
    if (begin > 0) length = pieceBytes;
    Require(MCBin::WriteAll(in.Get(), text.substr(begin, length)), "the pipe takes a piece");
  }
  in.Close();
  CsvReader reader(out.Get(), "input", delimiter);
  return ReadAll(reader);
}

std::string Write(const std::vector<Fields>& records, char delimiter) {
  std::string text = "\xEF\xBB\xBF";  // one that belongs to the first field stays there
  for (const Fields& fields : records) {
    for (std::size_t i = 0; i < fields.size(); ++i) {
      if (i > 0) text += delimiter;
      const auto& [content, quoted] = fields[i];
      if (!quoted) {
        text += content;
        continue;
      }
      text += '"';
      for (const char c : content) text.append(c == '"' ? 2 : 1, c);
      text += '"';
    }
    text += '\n';
  }
  return text;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  if (size < 2) return 0;
  constexpr std::string_view kDelimiters = ",;\t|";
  const char delimiter = kDelimiters[data[0] % kDelimiters.size()];
  const std::string_view text(reinterpret_cast<const char*>(data) + 2,
                              std::min(size - 2, (kMostPieces - 1) * kPieceBytes));

  const Content content = ReadWhole(text, delimiter);
  const std::size_t fewestBytes = text.size() / (kMostPieces - 1) + 1;
  const std::size_t pieceBytes = std::min(fewestBytes + data[1] % 16, kPieceBytes);
  Require(content == ReadInPieces(text, delimiter, pieceBytes), "pieces make no difference");
  if (content.refusal.empty()) {
    Require(content == ReadWhole(Write(content.records, delimiter), delimiter),
            "what is written anew reads back");
  }
  return 0;
}
