#include "csv/csvreader.h"

#include <gtest/gtest.h>
#include <sys/socket.h>
#include <unistd.h>

#include <cstdio>
#include <cstdlib>
#include <memory>
#include <random>
#include <string>
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
    {"BlankLineBetween", "a,b\n\n1,2\n", "f:2: blank line"},
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
    {"Gzip", "\x1F\x8B\x08", "f: this is a packed file"}};

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
  const std::string full((std::size_t{1} << 20) - 1, 'y');  // CR is the buffer's last byte
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

TEST(CsvReader, RefusesARecordWithoutEnd) {
  const std::string result = ReadAll("a,b\n\"" + std::string(CsvReader::kMaxRecordBytes, 'x'));
  EXPECT_EQ(result.substr(0, 34), "f:2: this record is longer than 64");
}

}  // namespace
