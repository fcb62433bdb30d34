#include "csv/inputvariables.h"

#include <fmt/format.h>
#include <fmt/ranges.h>

#include <algorithm>
#include <cctype>
#include <map>
#include <set>
#include <utility>

#include "binmodel/model/refusal.h"
#include "binmodel/text/displaytext.h"
#include "binmodel/text/utf8.h"
#include "csv/numberformat.h"

namespace MCBin {

using MCBinModel::RefusalCode;

namespace {

class Builder {
 public:
  Builder(const InputFiles& files, IBINVariable::BINWRoundingOption rounding,
          const NumberFormat& numbers, std::vector<ColumnNote>& notes)
      : fFiles(files), fRounding(rounding), fNumbers(numbers), fNotes(notes) {}

  // `column` is that of the value file.
  void Add(const ColumnRequest& request, const ColumnScan& scan, std::size_t column) {
    switch (request.use) {
      case ColumnUse::kTarget:
        AddTarget(request, scan, column);
        break;
      case ColumnUse::kWeight:
        fVariables.weight = {{request.name, fRounding, request.missing.ForNumbers()}, column};
        break;
      case ColumnUse::kAttribute:
        AddAttribute(request, scan, column);
        break;
    }
  }

  MCBinModel::RunVariables Finish() {
    const bool refusalSaysAll = fVariables.attributes.empty() && fMarks.text.empty();
    if (!fNotNumeric.empty() && !refusalSaysAll) {
      fNotes.push_back({ColumnNote::Kind::kNotNumeric,
                        {},
                        "left out because they are not numeric: " + fNotNumeric + MarksFact(),
                        {},
                        fMarks.decimal,
                        fMarks.thousands});
    }
    if (fVariables.attributes.empty()) {
      Refuse({},
             fmt::format("no column can be binned{}{}{}",
                         fNotNumeric.empty() ? "" : "; not numeric: ", fNotNumeric, MarksFact()));
    }
    return std::move(fVariables);
  }

 private:
  [[noreturn]] void Refuse(const std::string& column, const std::string& reason) const {
    throw MCBinModel::Refusal(RefusalCode::kInput, {fFiles.GetName(), column, {}}, reason);
  }

  MCBinModel::Refusal::About About(const ColumnRequest& request,
                                   const ColumnScan::Sighting& sighting) const {
    return {fFiles.Where(sighting.line), request.name, sighting.text};
  }

  // Of texts that are all different, as far as they are looked at.
  static std::string IdentifierFact(const ColumnScan& scan) {
    const FirstTexts& first = scan.GetFirstTexts();
    if (!first.LookLikeIdentifiers()) return {};
    return fmt::format("; the first {} are all different, as identifiers are", first.GetCount());
  }

  // "line 12", or with several files "may.csv:12".
  std::string LineOf(const ColumnScan::Sighting& sighting) const {
    return fFiles.AreSeveral() ? fFiles.Where(sighting.line)
                               : fmt::format("line {}", sighting.line);
  }

  void AddTarget(const ColumnRequest& request, const ColumnScan& scan, std::size_t column) {
    CheckCategories(request, scan, "a target has");
    if (scan.GetCategoryCount() < 2) {
      const bool none = scan.GetCategoryCount() == 0;
      Refuse(request.name,
             fmt::format("the target {} has {}; at least two different values are needed",
                         MCBinModel::QuotedText(request.name),
                         none ? "no value" : "a single value in all records"));
    }
    fVariables.targets.push_back(MakeCategorical(request, scan));
    fVariables.targetColumns.push_back(column);
  }

  void AddAttribute(const ColumnRequest& request, const ColumnScan& scan, std::size_t column) {
    const bool categorical = request.kind == KindRequest::kCategorical || scan.IsBoolean();
    if (!categorical && !scan.IsNumeric()) {
      LeaveOutText(request, scan);
      return;
    }
    if (categorical) {
      CheckCategories(request, scan, "a categorical column has");
      if (scan.GetCategoryCount() < 2) {
        fNotes.push_back({ColumnNote::Kind::kOther, request.name,
                          fmt::format("left out: column {} has fewer than two categories",
                                      MCBinModel::QuotedText(request.name))});
        return;
      }
    } else {
      CheckFinite(request, scan);
    }
    fVariables.attributes.push_back(categorical ? MakeCategorical(request, scan)
                                                : MakeContinuous(request, scan));
    fVariables.attributeColumns.push_back(column);
  }

  // Marks that make a number of a text; NUL: as the file was read by.
  struct Marks {
    std::string text;
    char decimal = '\0';
    char thousands = '\0';
  };

  // The marks of a text that is no number by those the file was read by; none when there are none.
  Marks FindMarks(const std::string& text, const ColumnScan& scan) const {
    const auto isNumber = [&text](const NumberFormat& format) {
      return ParseNumber(text, format).kind == MCBinModel::NumberKind::kNumber;
    };
    const bool hasPoint = text.find('.') != std::string::npos;
    if (fNumbers.decimal == '.' && text.find(',') != std::string::npos) {
      if (!scan.HasDecimalPoint() && isNumber({',', '.'}))
        return {text, ',', hasPoint ? '.' : '\0'};
      if (isNumber({'.', ','})) return {text, '\0', ','};
    }
    if (fNumbers.decimal == ',' && hasPoint && isNumber({',', '.'})) return {text, '\0', '.'};
    return {};
  }

  std::string MarksFact() const {
    if (fMarks.text.empty()) return {};
    return fmt::format("; {} is a number with {}", MCBinModel::QuotedText(fMarks.text),
                       fMarks.decimal == ',' ? "a decimal comma" : "marks between its thousands");
  }

  // Whether a text is a number by other marks, which are kept: the first one of all columns.
  bool HasOtherMarks(const std::string& text, const ColumnScan& scan) {
    const Marks marks = FindMarks(text, scan);
    if (fMarks.text.empty()) fMarks = marks;
    return !marks.text.empty();
  }

  // "2 of 699 fields are texts: '?', 'x'".
  static std::string StrayFact(const ColumnScan::StrayTexts& stray, bool areTimes) {
    std::vector<std::string> texts;
    for (const std::string& text : stray.texts) texts.push_back(MCBinModel::QuotedText(text));
    return fmt::format("{} of {} fields {} {}{}: {}", stray.fields, stray.fields + stray.numbers,
                       stray.fields == 1 ? "is no" : "are no", areTimes ? "date" : "number",
                       stray.fields == 1 ? "" : "s", fmt::join(texts, ", "));
  }

  void AddStrayNote(const ColumnRequest& request, const ColumnScan::StrayTexts& stray,
                    bool areTimes) {
    fNotes.push_back({ColumnNote::Kind::kStrayTexts, request.name,
                      fmt::format("left out: in column {}, {}",
                                  MCBinModel::QuotedText(request.name), StrayFact(stray, areTimes)),
                      stray.areWhole ? stray.texts : std::vector<std::string>()});
  }

  void LeaveOutText(const ColumnRequest& request, const ColumnScan& scan) {
    const bool areTimes = scan.StartsWithTime();
    if (request.byName) {
      const ColumnScan::Sighting& text = *scan.GetFirstText();
      const auto stray = scan.GetStrayTexts();
      throw MCBinModel::Refusal(
          RefusalCode::kTextInNamedColumn, About(request, text),
          fmt::format("{} in column {} is not a {}{}", MCBinModel::QuotedText(text.text),
                      MCBinModel::QuotedText(request.name), areTimes ? "date" : "number",
                      stray ? " (" + StrayFact(*stray, areTimes) + ")" : ""));
    }
    const ColumnScan::Sighting& text = *scan.GetFirstText();
    const auto stray = scan.GetStrayTexts();
    const std::vector<std::string> texts = stray ? stray->texts : std::vector{text.text};
    const bool areNumbers =
        !areTimes && std::any_of(texts.begin(), texts.end(),
                                 [&](const auto& other) { return HasOtherMarks(other, scan); });
    if (stray && !areNumbers) {
      AddStrayNote(request, *stray, areTimes);
      return;
    }
    constexpr int kMostNamed = 10;
    if (++fNotNumericCount > kMostNamed) {
      if (fNotNumericCount == kMostNamed + 1) fNotNumeric += " and more";
      return;
    }
    const ColumnScan::Sighting shown = scan.GetFirstNoBoolean().value_or(text);
    const char* const fact = areTimes                   ? " is no date"
                             : scan.GetFirstNoBoolean() ? ", unlike the booleans before it"
                                                        : "";
    fNotNumeric += fmt::format("{}{} ({}: {}{}{})", fNotNumeric.empty() ? "" : ", ",
                               MCBinModel::QuotedText(request.name), LineOf(shown),
                               MCBinModel::ElideText(shown.text, 20), fact,
                               areNumbers ? "" : IdentifierFact(scan));
  }

  void CheckFinite(const ColumnRequest& request, const ColumnScan& scan) const {
    const auto& infinite = scan.GetFirstInfinite();
    if (!infinite) return;
    throw MCBinModel::Refusal(
        RefusalCode::kInfiniteNumber, About(request, *infinite),
        fmt::format("the number {} in column {} is infinite or too large",
                    MCBinModel::QuotedText(infinite->text), MCBinModel::QuotedText(request.name)));
  }

  void CheckCategories(const ColumnRequest& request, const ColumnScan& scan,
                       const char* whatHas) const {
    if (scan.IsNumeric()) CheckFinite(request, scan);
    const auto& beyond = scan.GetFirstBeyond();
    if (!beyond) return;
    const bool tooLong = beyond->bytes > ColumnScan::kMaxCategoryBytes;
    const std::string limit =
        tooLong ? fmt::format("values of at most {} bytes, this one has {}",
                              ColumnScan::kMaxCategoryBytes, beyond->bytes)
                : fmt::format("at most {} different values, {} is one too many",
                              ColumnScan::kMaxCategories, MCBinModel::QuotedText(beyond->text));
    throw MCBinModel::Refusal(
        RefusalCode::kTooManyCategories, About(request, *beyond),
        fmt::format("column {}: {} {}{}; choose another column, or group its values first",
                    MCBinModel::QuotedText(request.name), whatHas, limit, IdentifierFact(scan)));
  }

  MCBinModel::VariableInfo MakeContinuous(const ColumnRequest& request,
                                          const ColumnScan& scan) const {
    const bool isTime = scan.StartsWithTime();
    return {request.name,
            MCBinModel::VariableKind::kContinuous,
            isTime ? request.missing.ForTimes() : request.missing.ForNumbers(),
            {},
            {},
            std::nullopt,
            isTime};
  }

  MCBinModel::VariableInfo MakeCategorical(const ColumnRequest& request,
                                           const ColumnScan& scan) const {
    MCBinModel::VariableInfo info{
        request.name, MCBinModel::VariableKind::kStringCategorical, {}, {}, {}};
    if (scan.IsBoolean()) {
      info.missing = request.missing.ForTexts();
      info.texts = scan.GetBooleans();
    } else if (scan.IsNumeric()) {
      info.kind = MCBinModel::VariableKind::kNumericCategorical;
      info.missing = request.missing.ForNumbers();
      for (int code = 0; code < scan.GetCategoryCount(); ++code) {
        info.numbers.push_back(scan.GetNumbers().Decode(code));
      }
    } else {
      info.missing = request.missing.ForTexts();
      for (int code = 0; code < scan.GetCategoryCount(); ++code) {
        info.texts.push_back(scan.GetTexts().Decode(code));
        CheckUtf8(request, info.texts.back());
      }
      NoteTwins(request, info.texts);
    }
    return info;
  }

  // Categories that are most likely meant to be one.
  void NoteTwins(const ColumnRequest& request, const std::vector<std::string>& texts) const {
    std::map<std::string, const std::string*> known;
    for (const std::string& text : texts) {
      std::string plain(MCBinModel::TrimBlanks(text));
      for (char& c : plain) c = static_cast<char>(std::tolower(static_cast<unsigned char>(c)));
      const auto [other, isNew] = known.emplace(std::move(plain), &text);
      if (isNew) continue;
      fNotes.push_back(
          {ColumnNote::Kind::kOther, request.name,
           fmt::format("column {}: {} and {} are two categories, which differ in "
                       "blanks or letter case alone",
                       MCBinModel::QuotedText(request.name), MCBinModel::QuotedText(*other->second),
                       MCBinModel::QuotedText(text))});
      return;
    }
  }

  void CheckUtf8(const ColumnRequest& request, const std::string& text) const {
    if (MCBinModel::IsUtf8(text)) return;
    Refuse(request.name,
           fmt::format("the value {} in column {} is not UTF-8 text; convert the file first, for "
                       "example: iconv -f LATIN1 -t UTF-8",
                       MCBinModel::QuotedText(text), MCBinModel::QuotedText(request.name)));
  }

  const InputFiles& fFiles;
  const IBINVariable::BINWRoundingOption fRounding;
  const NumberFormat& fNumbers;
  std::vector<ColumnNote>& fNotes;
  MCBinModel::RunVariables fVariables;
  std::string fNotNumeric;
  int fNotNumericCount = 0;
  Marks fMarks;  // of the first text that is a number by them
};

}  // namespace

MCBinModel::RunVariables MakeInputVariables(const InputFiles& files,
                                            const std::vector<ColumnRequest>& requests,
                                            const InputScan& scan,
                                            IBINVariable::BINWRoundingOption rounding,
                                            const NumberFormat& numbers,
                                            std::vector<ColumnNote>& notes) {
  Builder builder(files, rounding, numbers, notes);
  for (std::size_t i = 0; i < requests.size(); ++i) {
    builder.Add(requests[i], scan.columns[i], scan.GetValueColumn(i));
  }
  return builder.Finish();
}

std::vector<ColumnNote> NoteIdentifiers(const MCBinModel::BinModel& model,
                                        const std::vector<ColumnRequest>& requests,
                                        const InputScan& scan) {
  constexpr std::uint64_t kFewestRecords = 100;
  std::vector<ColumnNote> notes;
  if (model.source.weight) return notes;
  std::set<std::string> wholes;
  for (std::size_t i = 0; i < requests.size(); ++i) {
    if (scan.columns[i].IsWhole()) wholes.insert(requests[i].name);
  }
  for (const MCBinModel::AttributeBins& bins : model.results) {
    const std::string& name = model.GetAttribute(bins).name;
    const bool allDiffer = bins.distinctValues >= kFewestRecords &&
                           static_cast<double>(bins.distinctValues) == bins.validWeight;
    if (!allDiffer || wholes.erase(name) == 0) continue;
    notes.push_back({ColumnNote::Kind::kIdentifier, name,
                     fmt::format("column {} has another whole number in every record, as "
                                 "identifiers have",
                                 MCBinModel::QuotedText(name))});
  }
  return notes;
}

}  // namespace MCBin
