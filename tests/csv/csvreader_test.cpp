#include "csv/csvreader.h"

#include <gtest/gtest.h>
#include <sys/socket.h>
#include <unistd.h>
#include <zlib.h>
#include <zstd.h>

#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <memory>
#include <random>
#include <string>
#include <thread>
#include <utility>
#include <vector>

#include "binmodel/model/refusal.h"

namespace {

using MCBin::CsvField;
using MCBin::CsvReader;
using MCBinModel::Refusal;

// What the reader makes of a text: a line per record, "line|field|field", quoted fields in
// quotes; or the message it ends with.
std::string ReadAll(int file, char delimiter) {
  CsvReader reader(file, "f", delimiter);
  std::string text;
  try {
    while (reader.Next()) {
      text += std::to_string(reader.GetLine());
      for (const CsvField& field : reader.GetFields()) {
        const std::string quote = field.quoted ? "\"" : "";
        text += "|" + quote + std::string(field.text) + quote;
      }
      text += "\n";
    }
  } catch (const Refusal& error) {
    return error.what();
  }
  return text;
}

std::string ReadAll(const std::string& content, char delimiter = ',') {
  const std::unique_ptr<FILE, int (*)(FILE*)> file(std::tmpfile(), std::fclose);
  std::fwrite(content.data(), 1, content.size(), file.get());
  std::rewind(file.get());
  return ReadAll(fileno(file.get()), delimiter);
}

struct ReadExample {
  const char* name;
  std::string content;
  std::string expected;  // the records, or how the message begins
};
const ReadExample kExamples[] = {
    {"Nothing", "", ""},
    {"NoLastLineEnd", "a,b\n1,2", "1|a|b\n2|1|2\n"},
    {"BlankLines", "\na,b\n  \n\t\n1,2\n \n", "2|a|b\n5|1|2\n"},
    {"EveryLineEnd", "a,b\r\n1,2\r3,4\n", "1|a|b\n2|1|2\n3|3|4\n"},
    {"LastLineEndsWithCr", "a\r", "1|a\n"},
    {"ByteOrderMark",
     "\xEF\xBB\xBF"
     "a,b\n",
     "1|a|b\n"},
    {"BlanksBelongToFields", " a ,\tb\n", "1| a |\tb\n"},
    {"EmptyAndQuotedEmpty", "a,b,c\n,\"\",\n", "1|a|b|c\n2||\"\"|\n"},
    {"QuotedDelimiterAndQuotes", "\"a,b\",\"c\"\"d\"\"\"\n", "1|\"a,b\"|\"c\"d\"\"\n"},
    {"LineEndsInQuotesCount", "\"a\nb\r\nc\rd\",x\n1,2\n", "1|\"a\nb\r\nc\rd\"|x\n5|1|2\n"},
    {"QuoteInsideUnquoted", "5\" pipe,b\n", "1|5\" pipe|b\n"},
    {"BlankLinesAtTheEnd", "a,b\n1,2\n\n\r\n", "1|a|b\n2|1|2\n"},
    {"BlankLineInOneColumn", "a\n\n1\n", "1|a\n2|\n3|1\n"},
    {"BlankLinesBetween", "\n\na,b\n\n1,2\n\n\r\n3,4\n", "3|a|b\n5|1|2\n8|3|4\n"},
    {"TooFewFields", "a,b\n1,2\n3\n", "f:3: 1 fields found, 2 expected"},
    {"TooManyFields", "a,b\n\"x\ny\",2\n3,4,5\n", "f:4: 3 fields found, 2 expected"},
    {"QuoteNeverClosed", "a,b\n1,2\n\"x,3\n4,5\n", "f:3: the quote opened here"},
    {"TextAfterQuote", "a,b\n\"x\"y,2\n", "f:2: text after a closing quote"},
    {"NulByte", std::string("a,b\n1,\0\n", 8), "f:2: a NUL byte"},
    {"NulByteInQuotes", std::string("a,\"\n\0\"\n", 7), "f:2: a NUL byte"},
    {"Utf16",
     "\xFF\xFE"
     "a",
     "f: this is UTF-16"},
    {"Bzip2", "BZh91AY", "f: this is a packed file"},
    {"GzipCutOff", "\x1F\x8B\x08", "f: this packed file is cut off"},
    {"GzipDamaged", "\x1F\x8Bxxxxxxxxxxxxxxxx", "f: this packed file is damaged"},
    {"ZstdCutOff", "\x28\xB5\x2F\xFD", "f: this packed file is cut off"}};

TEST(CsvReader, ReadsOrRefuses) {
  for (const auto& [name, content, expected] : kExamples) {
    const std::string result = ReadAll(content);
    EXPECT_EQ(result.substr(0, expected.size()), expected) << name << ": " << result;
    EXPECT_EQ(result.empty(), expected.empty()) << name;
  }
}

TEST(CsvReader, TakesAnotherDelimiter) {
  EXPECT_EQ(ReadAll("a;b\n1,5;2\n", ';'), "1|a|b\n2|1,5|2\n");
  for (const std::string delimiter : {".", "-", "5"}) {  // which also occur in numbers
    EXPECT_EQ(ReadAll("12" + delimiter + "34\n", delimiter[0]), "1|12|34\n");
  }
}

std::string Gzip(const std::string& text) {
  z_stream stream = {};
  EXPECT_EQ(deflateInit2(&stream, 1, Z_DEFLATED, MAX_WBITS + 16, 8, Z_DEFAULT_STRATEGY), Z_OK);
  std::string packed(deflateBound(&stream, text.size()), '\0');
  stream.next_in = reinterpret_cast<Bytef*>(const_cast<char*>(text.data()));
  stream.avail_in = static_cast<uInt>(text.size());
  stream.next_out = reinterpret_cast<Bytef*>(packed.data());
  stream.avail_out = static_cast<uInt>(packed.size());
  EXPECT_EQ(deflate(&stream, Z_FINISH), Z_STREAM_END);
  packed.resize(stream.total_out);
  deflateEnd(&stream);
  return packed;
}

// As from a pipe, whose length is not known; `windowLog` is what
// `zstd --long` sets, more than 27 needs a permission.
std::string Zstd(const std::string& text, int windowLog) {
  ZSTD_CCtx* const context = ZSTD_createCCtx();
  ZSTD_CCtx_setParameter(context, ZSTD_c_compressionLevel, 1);
  ZSTD_CCtx_setParameter(context, ZSTD_c_windowLog, windowLog);
  std::string packed(ZSTD_compressBound(text.size()), '\0');
  ZSTD_inBuffer from = {text.data(), text.size(), 0};
  ZSTD_outBuffer into = {packed.data(), packed.size(), 0};
  ZSTD_compressStream2(context, &into, &from, ZSTD_e_continue);
  EXPECT_EQ(ZSTD_compressStream2(context, &into, &from, ZSTD_e_end), 0u);
  ZSTD_freeCCtx(context);
  packed.resize(into.pos);
  return packed;
}

std::string PlainZstd(const std::string& text) { return Zstd(text, 0); }

// Larger than the buffers on both sides, in two parts one after the other; and cut off anywhere.
TEST(CsvReader, UnpacksGzipAndZstd) {
  std::mt19937 random(3);
  std::string content = "a,b\n";
  while (content.size() < 4'000'000) {
    content += std::to_string(random()) + "," + std::to_string(random()) + "\n";
  }
  const std::string expected = ReadAll(content);
  const std::string head = content.substr(0, 1'500'000);
  const std::string tail = content.substr(head.size());
  for (const auto pack : {&Gzip, &PlainZstd}) {
    const std::string packed = pack(head) + pack(tail);
    EXPECT_TRUE(ReadAll(packed) == expected);
    EXPECT_EQ(ReadAll(packed.substr(0, packed.size() - 1)), "f: this packed file is cut off");
    std::string damaged = packed;
    damaged[damaged.size() / 3] ^= 0x55;
    EXPECT_TRUE(ReadAll(damaged) != expected);
    EXPECT_EQ(ReadAll(pack("")), "");
  }
  EXPECT_EQ(ReadAll(Gzip("a\n1\n") + std::string(300'000, '\0')), ReadAll("a\n1\n"));
  EXPECT_EQ(ReadAll(Gzip("a\n1\n") + std::string(9, '\0') + "x"), "f: this packed file is cut off");
  EXPECT_TRUE(ReadAll(Zstd(content, 28)) == expected);
}

TEST(NumberFormat, ReadsDecimalCommasAndGroups) {
  constexpr double kText = -1e9;
  const MCBin::NumberFormat comma{',', '\0'};
  const MCBin::NumberFormat german{',', '.'};
  const MCBin::NumberFormat swiss{'.', '\''};
  struct Example {
    MCBin::NumberFormat format;
    const char* text;
    double value;
  };
  for (const auto& [format, text, value] :
       {Example{comma, "1,5", 1.5}, Example{comma, " -0,25e1 ", -2.5}, Example{comma, "1.5", kText},
        Example{comma, "1.234,5", kText}, Example{comma, "-,5", -0.5},
        Example{comma, "1,5,5", kText}, Example{german, "1.234,5", 1234.5},
        Example{german, "-12.345.678", -12345678}, Example{german, "1.5", kText},
        Example{german, "1234,5", 1234.5}, Example{german, "1234.567", kText},
        Example{german, "1.2345", kText}, Example{german, ".123", kText},
        Example{german, "0.123", kText}, Example{german, "-00.123", kText},
        Example{german, "0,123", 0.123}, Example{swiss, "1'234.5", 1234.5},
        Example{swiss, "x", kText}, Example{swiss, "-", kText}}) {
    const MCBinModel::ParsedNumber number = MCBin::ParseNumber(text, format);
    EXPECT_EQ(number.kind == MCBinModel::NumberKind::kNumber ? number.value : kText, value) << text;
  }
  EXPECT_EQ(MCBin::ParseNumber("nan", comma).kind, MCBinModel::NumberKind::kNaN);
}

// Against the C library, which rounds correctly.
TEST(CsvReader, ReadsPlainDecimalsInPassing) {
  std::mt19937_64 random(11);
  std::vector<std::string> texts = {"0", "-0", "1.", "-.5", "0001", "123456789012345"};
  for (int i = 0; i < 20000; ++i) {
    std::string digits = std::to_string(random() % 1'000'000'000'000'000ULL);
    digits.resize(1 + random() % digits.size());
    digits.insert(random() % (digits.size() + 1), ".");
    texts.push_back((i % 2 == 0 ? "-" : "") + digits);
  }
  const std::size_t plainCount = texts.size();
  for (const char* text : {"x", "-", ".", "-.", "--1", "1.2.3", "1-", "+1", "1e3", " 1", "1 ",
                           "12x", "0x1", "1234567890123456", "123456789012345678901234567890"}) {
    texts.push_back(text);
  }
  std::string content;
  for (const std::string& text : texts) content += text + "\n";

  const std::unique_ptr<FILE, int (*)(FILE*)> file(std::tmpfile(), std::fclose);
  std::fwrite(content.data(), 1, content.size(), file.get());
  std::rewind(file.get());
  CsvReader reader(fileno(file.get()), "f", ',');
  for (std::size_t i = 0; i < texts.size(); ++i) {
    ASSERT_TRUE(reader.Next());
    const CsvField& field = reader.GetFields()[0];
    ASSERT_EQ(field.text, texts[i]);
    ASSERT_EQ(field.decimal.has_value(), i < plainCount) << texts[i];
    const double expected = std::strtod(texts[i].c_str(), nullptr);
    ASSERT_EQ(field.decimal.value_or(expected), expected) << texts[i];
  }
}

// The buffer ends within fields, quotes and line ends; none of it may show.
TEST(CsvReader, ReadsTheSameWhereverTheBufferEnds) {
  std::mt19937 random(7);
  std::string content = "a,b\n";
  std::string expected = "1|a|b\n";
  std::size_t line = 2;
  for (int i = 0; i < 60; ++i) {
    const std::string field(random() % 200000, 'x');
    content += field + ",\"" + field + "\"\"\n\"\r\n";
    expected += std::to_string(line) + "|" + field + "|\"" + field + "\"\n\"\n";
    line += 2;
  }
  EXPECT_TRUE(ReadAll(content) == expected);

  for (const std::string start : {"", "x"}) {  // pairs of quotes straddle it
    const std::string quotes(700000, '"');
    EXPECT_TRUE(ReadAll("\"" + start + quotes + quotes + "\"\n") ==
                "1|\"" + start + quotes + "\"\n");
  }
  const std::string full(CsvReader::kChunkBytes - 1, 'y');  // CR is the buffer's last byte
  EXPECT_TRUE(ReadAll(full + "\r\nz\r\n") == "1|" + full + "\n2|z\n");
}

// Whoever closes a socket without having read from it gives the other side an error after the data.
TEST(CsvReader, RefusesWhatCannotBeReadToItsEnd) {
  int ends[2];
  ASSERT_EQ(socketpair(AF_UNIX, SOCK_STREAM, 0, ends), 0);
  ASSERT_EQ(write(ends[0], "x", 1), 1);
  ASSERT_EQ(write(ends[1], "a,b\n1,2\n", 8), 8);
  close(ends[1]);
  EXPECT_EQ(ReadAll(ends[0], ','), "f: cannot read: Connection reset by peer");
  close(ends[0]);
}

// Whatever is told by the first bytes, although they come one by one.
TEST(CsvReader, KnowsFilesThatArriveByteByByte) {
  for (const auto& [content, expected] : {std::pair<std::string, std::string>{"\xEF\xBB\xBF"
                                                                              "a,b\n1,2\n",
                                                                              "1|a|b\n2|1|2\n"},
                                          {Gzip("a,b\n1,2\n"), "1|a|b\n2|1|2\n"},
                                          {"a", "1|a\n"}}) {
    int ends[2];
    ASSERT_EQ(pipe(ends), 0);
    std::thread writer([&] {
      for (const char c : content) {
        if (write(ends[1], &c, 1) != 1) break;
        std::this_thread::sleep_for(std::chrono::milliseconds(2));
      }
      close(ends[1]);
    });
    EXPECT_EQ(ReadAll(ends[0], ','), expected);
    writer.join();
    close(ends[0]);
  }
}

TEST(CsvReader, RefusesARecordWithoutEnd) {
  const std::string result = ReadAll("a,b\n\"" + std::string(CsvReader::kMaxRecordBytes, 'x'));
  EXPECT_EQ(result.substr(0, 34), "f:2: this record is longer than 64");
}

}  // namespace
