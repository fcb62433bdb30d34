#include "csv/inputscan.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <bit>
#include <cstdint>
#include <fstream>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "binmodel/model/refusal.h"
#include "csv/inputfiles.h"
#include "csv/recordscan.h"
#include "support/dice.h"
#include "support/tempdir.h"

namespace {

using MCBin::ColumnRequest;
using MCBin::ColumnScan;
using MCBin::ColumnUse;
using MCBin::CsvReader;
using MCBin::InputScan;
using MCBin::KindRequest;

std::string Describe(const std::optional<ColumnScan::Sighting>& sighting) {
  if (!sighting) return "-";
  return std::to_string(sighting->line) + ":" + sighting->text + ":" +
         std::to_string(sighting->bytes);
}

// All that a run or its user learns of a column, its values bit by bit.
std::string Describe(const InputScan& scan, std::size_t request, bool mayBeCategorical) {
  const ColumnScan& column = scan.columns[request];
  std::string text =
      "\ncolumn" + std::string(column.IsNumeric() ? " of numbers" : "") +
      (column.IsBoolean()
           ? " boolean " + column.GetBooleans().back() + "|" + column.GetBooleans().front()
           : "") +
      (column.StartsWithTime() ? " time" : "") + " first " +
      std::to_string(column.GetFirstTexts().GetCount()) + (column.IsWhole() ? " whole" : "") +
      (column.HasDecimalPoint() ? " with point" : "");
  text += " " + Describe(column.GetFirstText()) + " " + Describe(column.GetFirstInfinite());
  if (const auto stray = column.GetStrayTexts()) {
    text += " stray " + std::to_string(stray->fields) + " " + std::to_string(stray->numbers) +
            (stray->areWhole ? "" : " cut");
    for (const std::string& one : stray->texts) text += "|" + one;
  }
  if (mayBeCategorical) {
    text += " beyond " + Describe(column.GetFirstBeyond()) + " categories";
    const int count = column.GetFirstBeyond() ? 0 : column.GetCategoryCount();
    for (int code = 0; code < count; ++code) {
      text += "|" + (column.IsNumeric() ? std::to_string(column.GetNumbers().Decode(code))
                                        : column.GetTexts().Decode(code));
    }
    if (column.GetFirstBeyond()) return text;
  } else if (!column.IsNumeric()) {
    return text;  // nobody reads its values
  }
  const std::size_t perBlock = scan.values->GetRecordsPerBlock();
  const std::uint64_t recordCount = scan.values->GetRecordCount();
  std::vector<double> values(perBlock);
  for (std::size_t block = 0; block * perBlock < recordCount; ++block) {
    scan.values->Read(block, scan.GetValueColumn(request), values.data());
    const auto count = std::min<std::uint64_t>(perBlock, recordCount - block * perBlock);
    for (std::size_t i = 0; i < count; ++i) {
      text += " " + std::to_string(std::bit_cast<std::uint64_t>(values[i]));
    }
  }
  return text;
}

// A file and what is asked of it.
class Input {
 public:
  Input(std::string content, std::vector<ColumnRequest> requests, std::vector<std::string> missing,
        MCBin::NumberFormat numbers)
      : fContent(std::move(content)),
        fRequests(std::move(requests)),
        fMissing(std::move(missing)),
        fNumbers(numbers) {}

  // In blocks; or record by record when `jobs` is 0.
  std::string Scan(std::size_t chunkBytes, int jobs) const {
    const std::string path = fDirectory.Path() + "/f";
    std::ofstream(path, std::ios::binary) << fContent;
    try {
      MCBin::InputFiles files({path}, ';', fNumbers, chunkBytes);
      const InputScan scan =
          jobs == 0 ? ScanRecords(files.GetReader())
                    : MCBin::ScanInput(files, fRequests, IBINVariable::RoundClosest, fMissing,
                                       {fDirectory.Path(), [](std::uint64_t) {}, jobs});
      std::string text =
          std::to_string(scan.recordCount) + " records, dropped " +
          std::to_string(scan.dropped.missing) + " " + std::to_string(scan.dropped.zero) + " " +
          std::to_string(scan.dropped.roundedToZero) + " " + scan.weightNote.value_or("");
      for (std::size_t i = 0; i < fRequests.size(); ++i) {
        text += Describe(scan, i, fRequests[i].MayBeCategorical());
      }
      return text;
    } catch (const MCBinModel::Refusal& refusal) {
      return refusal.what();
    }
  }

 private:
  // The plain form.
  InputScan ScanRecords(CsvReader& reader) const {
    InputScan scan;
    scan.columns = std::vector<ColumnScan>(fRequests.begin(), fRequests.end());
    std::size_t columnCount = fRequests.size();
    std::optional<MCBinModel::WeightInfo> info;
    std::optional<MCBin::WeightCheck> weights;
    for (std::size_t i = 0; i < fRequests.size(); ++i) {
      scan.textColumns.push_back(fRequests[i].MayBeCategorical() ? columnCount++ : i);
      if (fRequests[i].use != ColumnUse::kWeight) continue;
      info = {"w", IBINVariable::RoundClosest, fRequests[i].missing.ForEitherKind()};
      weights.emplace(*info, fRequests[i].position, fMissing);
    }
    scan.values = std::make_unique<MCBin::ValueFile>(fDirectory.Path(), columnCount);
    MCBin::WeightCheck* const check = weights ? &*weights : nullptr;
    const MCBin::RecordParser& parser = reader.GetParser();
    const MCBin::ScanPlan plan{
        parser.GetSyntax(), parser.GetNumbers(), false, fMissing, fRequests, check,
        scan.textColumns,   columnCount,         0,     {}};
    MCBin::RecordScan records(plan, check, scan);
    while (reader.Next()) records.Add(reader.GetRecord());
    if (weights) {
      scan.weightNote = weights->DescribeRounding();
      scan.dropped = weights->GetCoder().GetDropped();
      weights->GetCoder().CheckRecordsLeft(scan.recordCount, "f");
    }
    scan.values->Finish();
    return scan;
  }

  const std::string fContent;
  const std::vector<ColumnRequest> fRequests;
  const MCBin::MissingTexts fMissing;
  const MCBin::NumberFormat fNumbers;
  const TempDir fDirectory;
};

std::string AnyNumber(Dice& dice) {
  return std::to_string(dice.Roll(20)) +
         dice.OneOf({"", "", ".5", ".25", ".125", ".12345678901234567"});
}

// A field of a column of some kind, which is not of that kind all the time.
std::string AnyField(Dice& dice, int kind) {
  if (dice.OneIn(200)) kind = dice.Roll(9);
  switch (kind) {
    case 0:
      return std::to_string(dice.Roll(5));
    case 1:
      return AnyNumber(dice);
    case 2:
      return dice.OneOf({"a", "b", "?", "-9", "NA", ""});
    case 3:
      return "t" + std::to_string(dice.Roll(30));
    case 4:
      return dice.OneOf(
          {"\"1.5\"", "\"x;\r\n\"", "\"\"\"q\"\"\"", "\"\"", "5\"", " 7 ", "-0", "0"});
    case 5:
      return dice.OneOf({"yes", "no", "yes", "no", "nan", "", "Yes"});
    case 6:
      return dice.OneOf({"1e3", "nan", "1.234", "-.5", "+2", "inf", "1,5", "1.234,5", "-9.0"});
    case 7:
      return dice.OneOf({"2024-01-31", "2024-01-31 12:30:00.5", "1969-01-01T00:00Z", "nan", ""});
    default:
      return std::string(dice.OneIn(5) ? 5000 : 120, dice.OneOf({'x', 'y'}));
  }
}

std::string AnyTrouble(Dice& dice) {
  using std::string_literals::operator""s;
  return dice.OneOf({"1;2\n"s, "\"a\"b;1\n"s, "\0"s, "\"open"s, "-1;-1;-1;-1;-1;-1\n"s,
                     "x;x;x;x;x;x\n"s, "1;2;3;4;5;6;7\n"s});
}

Input AnyInput(Dice& dice) {
  constexpr std::size_t kFields = 6;
  const auto lineEnd = dice.OneOf({"\n", "\n", "\r\n", "\r"});
  const bool hasTrouble = dice.OneIn(3);
  std::vector<int> kinds;
  for (std::size_t i = 0; i < kFields; ++i) kinds.push_back(dice.Roll(8));
  std::string content = "a;b;c;d;e;f\n";
  for (int left = 1 + dice.Roll(60); left > 0; --left) {
    if (dice.OneIn(20)) content += dice.OneOf({"", " ", "\t "}) + std::string(lineEnd);
    if (hasTrouble && dice.OneIn(40)) content += AnyTrouble(dice);
    for (std::size_t i = 0; i < kFields; ++i) {
      content +=
          (i > 0 ? ";" : "") + (i + 1 < kFields ? AnyField(dice, kinds[i]) : AnyNumber(dice));
    }
    content += lineEnd;
  }
  if (dice.OneIn(3)) content.resize(content.size() - 1);

  std::vector<ColumnRequest> requests;
  for (const std::size_t position : {4U, 0U, 3U, 1U, 2U}) {
    const auto use = dice.OneIn(4) ? ColumnUse::kTarget : ColumnUse::kAttribute;
    const auto kind = use == ColumnUse::kTarget || dice.OneIn(2)
                          ? KindRequest::kDetect
                          : dice.OneOf({KindRequest::kContinuous, KindRequest::kCategorical});
    if (!dice.OneIn(5)) requests.push_back({position, "c", use, kind, false, {"c", {"2"}, {}}});
  }
  if (dice.OneIn(2))
    requests.push_back({5, "w", ColumnUse::kWeight, KindRequest::kDetect, true, {}});
  std::vector<std::string> missing;
  for (const char* text : {"?", "-9", "\"\"", "x"}) {
    if (dice.OneIn(2)) missing.push_back(text);
  }
  return {content, requests, missing, {dice.OneIn(4) ? ',' : '.', dice.OneIn(8) ? '\'' : '\0'}};
}

TEST(InputScan, IsTheSameInBlocksOfAnySizeAndRecordByRecord) {
  for (std::uint64_t seed = 0; seed < 300; ++seed) {
    Dice dice(seed);
    const Input input = AnyInput(dice);
    const std::string expected = input.Scan(CsvReader::kChunkBytes, 0);
    const auto bytes = static_cast<std::size_t>(8 + dice.Roll(400));
    for (const int jobs : {0, 1, 2, 5}) {
      ASSERT_EQ(input.Scan(bytes, jobs), expected) << seed << ": " << jobs << " jobs, " << bytes;
    }
    ASSERT_EQ(input.Scan(CsvReader::kChunkBytes, 1), expected) << seed;
  }
}

// More than a column can have, and most of them in one block or another.
TEST(InputScan, FindsTheCategoryThatIsOneTooMany) {
  std::string content = "a;b\n";
  for (int i = 0; i < ColumnScan::kMaxCategories + 9; ++i) {
    const std::string number = std::to_string(i / 3 * 3 + i % 2);
    content += number + ";t" + number + "\n" + std::to_string(i) + ";t" + std::to_string(i) + "\n";
  }
  std::vector<ColumnRequest> requests;
  for (const std::size_t position : {0U, 1U}) {
    requests.push_back(
        {position, "c", ColumnUse::kTarget, KindRequest::kDetect, true, {"c", {}, {}}});
  }
  const Input input(content, requests, {}, {});
  const std::string expected = input.Scan(CsvReader::kChunkBytes, 0);
  EXPECT_NE(expected.find(":t255:4 categories"), std::string::npos) << expected;
  for (const std::size_t bytes : {64U, 512U, 2048U})
    EXPECT_EQ(input.Scan(bytes, 2), expected) << bytes;
}

}  // namespace
