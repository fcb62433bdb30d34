#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "binmodel/model/variableinfo.h"
#include "csv/columnrequest.h"
#include "csv/csvfield.h"
#include "csv/firsttexts.h"
#include "csv/numbertally.h"
#include "metadata/bincatnumencoder.h"
#include "metadata/binstringencoder.h"

namespace MCBin {

// What the pass over the file learns about one column: whether it is numeric, and its categories
// when it may be categorical.
//
// Whether a column is numeric is known at the end only, so its categories are coded both
// as numbers and as texts until one of the two is ruled out. Of an attribute's column the first
// field decides whether the others are to be numbers, times (see ParseTime()), which are numbers as
// well, or booleans (see ParseBoolean()) with one text for yes and one for no.
//
//   Memory   at most kMaxCategories + 1 categories of each kind, of at most
//            kMaxCategoryBytes bytes; then the column's categories are given up.
class ColumnScan {
 public:
  static constexpr int kMaxCategories = int{MCBinModel::kMostCategories};
  static constexpr std::size_t kMaxCategoryBytes = 4096;

  // A field worth telling the user about.
  struct Sighting {
    std::uint64_t line;
    std::string text;   // its beginning
    std::size_t bytes;  // of the whole
  };

  // The texts among the numbers, or times, of a column that holds few different ones.
  struct StrayTexts {
    std::uint64_t fields;            // that hold one of them
    std::uint64_t numbers;           // fields that do not
    std::vector<std::string> texts;  // their beginnings, in the order of their appearance
    bool areWhole;                   // none of them is cut
  };

  // What a field is worth, if the column turns out to be numeric or to hold texts: its number,
  // or its category code when the column may be categorical. The missing value, or the code -1,
  // where there is none.
  struct Value {
    double ifNumeric;
    double ifTexts;
  };

  explicit ColumnScan(const ColumnRequest& request);

  // A scan of the records behind some others: `isDecided` as it is for those.
  ColumnScan(const ColumnRequest& request, bool isDecided);

  // Further fields cannot make it a column of times or booleans, and are not read as such.
  bool IsDecided() const {
    return fForm == Form::kNumbers || (fFirstText && fForm != Form::kTimes);
  }

  // The value of a missing field.
  Value GetMissing() const;

  // Takes in a field that is not missing. `counts` is false in a record that
  // is dropped for its weight: it says something about the kind, but adds no category.
  Value Add(const CsvField& field, std::uint64_t line, bool counts);

  // What a scan of its own has found in the records that follow: the numbers that need no category,
  // and all other fields, if there are any.
  struct Later {
    std::uint64_t numberCount = 0;
    NumberTally numbers;
    std::unique_ptr<ColumnScan> others;
  };

  // What the codes of that scan are in this one.
  struct Codes {
    std::vector<double> numbers;
    std::vector<double> texts;
  };

  // Takes all of it in, as if its fields had been added one by one. Requires CanTake(): otherwise
  // it matters where in the later records what is, and only adding them one by one tells.
  Codes Take(const Later& later);
  bool CanTake(const Later& later) const;

  // Every field so far is a number, or NaN, or infinite; or all are times, or booleans.
  bool IsNumeric() const { return !fFirstText; }

  // The first field that is not NaN is a time. With IsNumeric(): all are.
  bool StartsWithTime() const { return fForm == Form::kTimes; }

  // Every field so far is a whole number.
  bool IsWhole() const {
    return fNumberTally.AreWhole() && IsNumeric() && !IsBoolean() && !StartsWithTime();
  }

  // Every field so far is a boolean. The texts there are, by code: no comes first.
  bool IsBoolean() const { return fForm == Form::kBooleans && !fFirstText; }
  std::vector<std::string> GetBooleans() const;

  // Some number would be none with a decimal comma; of those before and among few texts.
  bool HasDecimalPoint() const { return fNumberTally.HaveDecimalPoint(); }

  // The first field that is no number, or no time as the first one is, and the first infinite one.
  const std::optional<Sighting>& GetFirstText() const { return fFirstText; }
  const std::optional<Sighting>& GetFirstInfinite() const { return fFirstInfinite; }

  // What made texts of a column that began with booleans.
  const std::optional<Sighting>& GetFirstNoBoolean() const { return fFirstNoBoolean; }

  // Nothing of a column without texts, with many different ones or with more texts than numbers.
  std::optional<StrayTexts> GetStrayTexts() const;

  // Of the fields that are texts.
  const FirstTexts& GetFirstTexts() const { return fFirstTexts; }

  // The first field that could not be a category, because there were too many or it is too
  // long; of the kind that the column turned out to be.
  const std::optional<Sighting>& GetFirstBeyond() const;

  // The categories in code order. Requires a column that may be categorical and has none
  // beyond.
  const BINCatNumEncoder& GetNumbers() const { return *fNumbers; }
  const BINStringEncoder& GetTexts() const { return *fTexts; }
  int GetCategoryCount() const;

 private:
  static constexpr std::size_t kMostStrayTexts = 5;

  // What the first field that is not NaN makes of a column.
  enum class Form { kUnknown, kNumbers, kTimes, kBooleans };

  Form FormOf(const CsvField& field) const;
  MCBinModel::ParsedNumber Parse(const CsvField& field) const;
  double AddBoolean(const CsvField& field, std::uint64_t line);
  void MakeBooleansTexts();
  void TakeBooleans(const ColumnScan& later);
  bool CanTakeForm(const Later& later) const;
  bool HasSameBooleans(const ColumnScan& later) const;

  // A category's text that came lately, and what it is worth.
  struct Recent {
    std::string text;
    Value value{};
    bool isKnown = false;
  };

  Recent& RecentOf(std::string_view text);
  Value AddField(const CsvField& field, std::uint64_t line, bool counts);
  double AddNumber(const CsvField& field, std::uint64_t line, bool counts);
  double AddText(std::string_view text, std::uint64_t line);
  void CountText(const CsvField& field);
  std::vector<std::string> JoinTexts(const ColumnScan& later) const;
  bool CountsTexts() const { return fFirstText && fDifferentTexts.size() <= kMostStrayTexts; }

  bool fMayBeCategorical;
  bool fMayBeBoolean;
  Form fForm = Form::kUnknown;
  std::vector<std::string> fMissingTexts;  // of booleans
  std::array<std::string, 2> fBooleans;    // the texts for no and yes, empty where there is none
  std::size_t fBooleanPair = 0;
  std::optional<Sighting> fFirstBoolean;
  std::optional<Sighting> fFirstNoBoolean;
  std::optional<Sighting> fFirstText;
  FirstTexts fFirstTexts;
  std::optional<Sighting> fFirstInfinite;
  NumberTally fNumberTally;
  std::uint64_t fFieldCount = 0;      // not missing
  std::uint64_t fTextFieldCount = 0;  // while there are few different ones
  std::vector<std::string> fDifferentTexts;
  bool fHasCutText = false;                  // among these
  std::optional<BINCatNumEncoder> fNumbers;  // empty when ruled out or given up
  std::optional<BINStringEncoder> fTexts;
  std::optional<Sighting> fFirstNumberBeyond;
  std::optional<Sighting> fFirstTextBeyond;
  std::array<Recent, 4> fRecent;
  std::string fTextBuffer;  // reused: the encoder wants a std::string
};

}  // namespace MCBin
