#include "csv/columnscan.h"

#include <algorithm>
#include <cmath>

#include "binmodel/model/usermissing.h"
#include "binmodel/text/boolean.h"
#include "binmodel/text/isotime.h"
#include "binmodel/text/number.h"
#include "common/missing.h"
#include "csv/numberformat.h"

namespace MCBin {

namespace {

constexpr double kNoCategory = -1.0;

ColumnScan::Sighting MakeSighting(std::uint64_t line, std::string_view text) {
  constexpr std::size_t kShownBytes = 100;
  return {line, std::string(text.substr(0, kShownBytes)), text.size()};
}

}  // namespace

ColumnScan::ColumnScan(const ColumnRequest& request)
    : fMayBeCategorical(request.MayBeCategorical()),
      fMayBeBoolean(request.kind == KindRequest::kDetect),
      fForm(fMayBeCategorical ? Form::kNumbers : Form::kUnknown),
      fMissingTexts(request.missing.values) {
  if (!fMayBeCategorical) return;
  fNumbers.emplace(kMaxCategories + 1);
  fTexts.emplace(kMaxCategories + 1);
  const MCBinModel::MissingDefinition missing = request.missing.ForEitherKind();
  if (missing.IsEmpty()) return;
  fNumbers->SetUserMissingInfo(MCBinModel::MakeNumericUserMissing(missing).release());
  fTexts->SetUserMissingInfo(MCBinModel::MakeStringUserMissing(missing).release());
}

ColumnScan::ColumnScan(const ColumnRequest& request, bool isDecided) : ColumnScan(request) {
  if (isDecided) fForm = Form::kNumbers;
}

ColumnScan::Value ColumnScan::GetMissing() const {
  return {fMayBeCategorical ? kNoCategory : MCMV::Missing(), kNoCategory};
}

// Few classes come again and again: what they are is looked up once.
ColumnScan::Value ColumnScan::Add(const CsvField& field, std::uint64_t line, bool counts) {
  ++fFieldCount;
  if (!fMayBeCategorical || !counts) return AddField(field, line, counts);
  Recent& recent = RecentOf(field.text);
  const bool isLookedAt = fFirstText && fFirstTexts.WantsMore();
  if (recent.isKnown && recent.text == field.text && !isLookedAt) {
    if (CountsTexts()) CountText(field);
    return recent.value;
  }
  const auto getState = [this] {
    return std::array{IsNumeric(), fNumbers.has_value(), fTexts.has_value()};
  };
  const auto before = getState();
  const Value value = AddField(field, line, counts);
  if (getState() != before) {
    fRecent = {};
  } else {
    recent = {std::string(field.text), value, true};
  }
  return value;
}

ColumnScan::Recent& ColumnScan::RecentOf(std::string_view text) {
  const std::size_t last = text.empty() ? 0 : static_cast<unsigned char>(text.back());
  return fRecent[(last + text.size()) % fRecent.size()];
}

ColumnScan::Value ColumnScan::AddField(const CsvField& field, std::uint64_t line, bool counts) {
  Value value = GetMissing();
  if (fForm == Form::kUnknown) fForm = FormOf(field);
  if (!fFirstText) {
    value.ifNumeric =
        fForm == Form::kBooleans ? AddBoolean(field, line) : AddNumber(field, line, counts);
  }
  const bool isText =
      fFirstText && fFirstTexts.WantsMore() && Parse(field).kind == MCBinModel::NumberKind::kText;
  if (isText) fFirstTexts.Add(field.text);
  if (CountsTexts()) CountText(field);
  if (fTexts && counts) value.ifTexts = AddText(field.text, line);
  return value;
}

ColumnScan::Form ColumnScan::FormOf(const CsvField& field) const {
  const MCBinModel::NumberKind kind = ParseNumber(field).kind;
  if (kind == MCBinModel::NumberKind::kNaN) return Form::kUnknown;
  if (kind != MCBinModel::NumberKind::kText) return Form::kNumbers;
  if (MCBinModel::ParseTime(field.text)) return Form::kTimes;
  const bool isBoolean = fMayBeBoolean && MCBinModel::ParseBoolean(field.text);
  return isBoolean ? Form::kBooleans : Form::kNumbers;
}

MCBinModel::ParsedNumber ColumnScan::Parse(const CsvField& field) const {
  if (fForm != Form::kTimes) return ParseNumber(field);
  const auto time = MCBinModel::ParseTime(field.text);
  if (time) return {MCBinModel::NumberKind::kNumber, *time};
  const bool isNaN = ParseNumber(field).kind == MCBinModel::NumberKind::kNaN;
  return {isNaN ? MCBinModel::NumberKind::kNaN : MCBinModel::NumberKind::kText, 0.0};
}

double ColumnScan::AddBoolean(const CsvField& field, std::uint64_t line) {
  const auto boolean = MCBinModel::ParseBoolean(field.text);
  if (!fFirstBoolean) {
    fFirstBoolean = MakeSighting(line, field.text);
    fBooleanPair = boolean->pair;
  }
  const bool isMissing =
      std::find(fMissingTexts.begin(), fMissingTexts.end(), field.text) != fMissingTexts.end();
  const bool isNaN = !boolean && ParseNumber(field).kind == MCBinModel::NumberKind::kNaN;
  if (isMissing || isNaN) return GetMissing().ifNumeric;
  if (boolean && boolean->pair == fBooleanPair) {
    std::string& known = fBooleans[boolean->isTrue ? 1 : 0];
    if (known.empty()) known = field.text;
    if (known == field.text) return boolean->isTrue ? 1.0 : 0.0;
  }
  fFirstNoBoolean = MakeSighting(line, field.text);
  MakeBooleansTexts();
  return GetMissing().ifNumeric;
}

// The column holds another text: none of them is a stray one.
void ColumnScan::MakeBooleansTexts() {
  fFirstText = fFirstBoolean;
  fTextFieldCount = fFieldCount - 1;
  fDifferentTexts = GetBooleans();
}

std::vector<std::string> ColumnScan::GetBooleans() const {
  std::vector<std::string> texts(fBooleans.begin(), fBooleans.end());
  std::erase(texts, "");
  return texts;
}

double ColumnScan::AddNumber(const CsvField& field, std::uint64_t line, bool counts) {
  const MCBinModel::ParsedNumber number = Parse(field);
  if (number.kind != MCBinModel::NumberKind::kNumber) {
    fNumberTally.AddNoNumber();
  } else if (fForm != Form::kTimes) {
    fNumberTally.Add(number.value, field.text);
  }
  if (number.kind == MCBinModel::NumberKind::kNumber && !fMayBeCategorical) return number.value;
  if (number.kind == MCBinModel::NumberKind::kText) {
    fFirstText = MakeSighting(line, field.text);
    fNumbers.reset();
  }
  if (number.kind == MCBinModel::NumberKind::kInfinite && !fFirstInfinite) {
    fFirstInfinite = MakeSighting(line, field.text);
  }
  if (number.kind != MCBinModel::NumberKind::kNumber || !fNumbers || !counts)
    return GetMissing().ifNumeric;
  const double code = fNumbers->Encode(number.value);
  if (fNumbers->GetNumberOfCategories() > kMaxCategories) {
    fFirstNumberBeyond = MakeSighting(line, field.text);
    fNumbers.reset();
  }
  return code;
}

void ColumnScan::CountText(const CsvField& field) {
  const MCBinModel::ParsedNumber number = Parse(field);
  if (number.kind == MCBinModel::NumberKind::kNumber && fForm != Form::kTimes) {
    fNumberTally.Add(number.value, field.text);
  }
  if (number.kind != MCBinModel::NumberKind::kText) return;
  ++fTextFieldCount;
  const auto [line, text, bytes] = MakeSighting(0, MCBinModel::TrimBlanks(field.text));
  fHasCutText = fHasCutText || text.size() < bytes;
  const bool isNew =
      std::find(fDifferentTexts.begin(), fDifferentTexts.end(), text) == fDifferentTexts.end();
  if (isNew) fDifferentTexts.push_back(text);
}

std::optional<ColumnScan::StrayTexts> ColumnScan::GetStrayTexts() const {
  const bool areStray = fTextFieldCount > 0 && fDifferentTexts.size() <= kMostStrayTexts &&
                        fTextFieldCount < fFieldCount - fTextFieldCount;
  if (!areStray) return std::nullopt;
  return StrayTexts{fTextFieldCount, fFieldCount - fTextFieldCount, fDifferentTexts, !fHasCutText};
}

double ColumnScan::AddText(std::string_view text, std::uint64_t line) {
  double code = kNoCategory;
  const bool tooLong = text.size() > kMaxCategoryBytes;
  if (!tooLong) {
    fTextBuffer.assign(text);
    code = fTexts->Encode(fTextBuffer);
  }
  if (tooLong || fTexts->GetNumberOfCategories() > kMaxCategories) {
    fFirstTextBeyond = MakeSighting(line, text);
    fTexts.reset();
  }
  return code;
}

void ColumnScan::TakeBooleans(const ColumnScan& later) {
  if (!fFirstBoolean) fFirstBoolean = later.fFirstBoolean;
  fBooleanPair = later.fBooleanPair;
  for (std::size_t i = 0; i < fBooleans.size(); ++i) {
    if (fBooleans[i].empty()) fBooleans[i] = later.fBooleans[i];
  }
}

// One more than are kept say that there are many.
std::vector<std::string> ColumnScan::JoinTexts(const ColumnScan& later) const {
  std::vector<std::string> texts = fDifferentTexts;
  for (const std::string& text : later.fDifferentTexts) {
    if (texts.size() > kMostStrayTexts) break;
    if (std::find(texts.begin(), texts.end(), text) == texts.end()) texts.push_back(text);
  }
  return texts;
}

bool ColumnScan::HasSameBooleans(const ColumnScan& later) const {
  for (std::size_t i = 0; i < fBooleans.size(); ++i) {
    const bool differ = fBooleans[i] != later.fBooleans[i];
    if (differ && !fBooleans[i].empty() && !later.fBooleans[i].empty()) return false;
  }
  return fBooleanPair == later.fBooleanPair;
}

// What is a time or a boolean to one of them is one to both, or to none.
bool ColumnScan::CanTakeForm(const Later& later) const {
  const Form form = later.others == nullptr ? Form::kUnknown : later.others->fForm;
  if (fForm == Form::kTimes || form == Form::kTimes) {
    const bool agree = fForm == form || fForm == Form::kUnknown || form == Form::kUnknown;
    return agree && later.numberCount == 0;
  }
  const bool hasBooleans = later.others != nullptr && later.others->fForm == Form::kBooleans;
  if (!hasBooleans) {
    const bool hasNoForm = later.others == nullptr || later.others->fForm == Form::kUnknown;
    return !IsBoolean() || (hasNoForm && later.numberCount == 0);
  }
  if (later.numberCount > 0 || !later.others->IsBoolean()) return false;
  return fForm == Form::kUnknown || (IsBoolean() && HasSameBooleans(*later.others));
}

bool ColumnScan::CanTake(const Later& later) const {
  if (!CanTakeForm(later)) return false;
  if (later.others == nullptr) return true;
  const ColumnScan& others = *later.others;
  const auto haveRoom = [](const auto& categories, const auto& more) {
    return categories->GetNumberOfCategories() + more->GetNumberOfCategories() <= kMaxCategories;
  };
  if (fNumbers &&
      (others.fFirstNumberBeyond || (others.fNumbers && !haveRoom(fNumbers, others.fNumbers))))
    return false;
  if (fTexts && (!others.fTexts || !haveRoom(fTexts, others.fTexts))) return false;

  // Among many different texts nobody looks for a decimal point any more.
  const bool counted = !fFirstText || CountsTexts();
  const bool becomeMany = counted && JoinTexts(others).size() > kMostStrayTexts;
  const bool havePoint = later.numbers.HaveDecimalPoint() || others.fNumberTally.HaveDecimalPoint();
  return !becomeMany || !havePoint || HasDecimalPoint();
}

ColumnScan::Codes ColumnScan::Take(const Later& later) {
  if (fForm == Form::kUnknown && later.numberCount > 0) fForm = Form::kNumbers;
  fFieldCount += later.numberCount;
  const bool looksAtNumbers = !fFirstText || CountsTexts();
  if (looksAtNumbers) fNumberTally.Add(later.numbers);
  if (later.others == nullptr) return {};
  fRecent = {};

  const ColumnScan& others = *later.others;
  fFieldCount += others.fFieldCount;
  if (fForm == Form::kUnknown) {
    fForm = others.fForm;
    fFirstNoBoolean = others.fFirstNoBoolean;
  }
  if (IsBoolean() && others.fFirstBoolean) TakeBooleans(others);
  fFirstTexts.Add(others.fFirstTexts);
  if (!fFirstText && !fFirstInfinite) fFirstInfinite = others.fFirstInfinite;
  if (looksAtNumbers) {
    fNumberTally.Add(others.fNumberTally);
    fDifferentTexts = JoinTexts(others);
    fTextFieldCount += others.fTextFieldCount;
    fHasCutText = fHasCutText || others.fHasCutText;
  }
  if (!fFirstText && others.fFirstText) {
    fFirstText = others.fFirstText;
    fNumbers.reset();
  }
  const auto join = [](auto& categories, const auto& more) {
    std::vector<double> codes;
    if (!categories || !more) return codes;
    for (int code = 0; code < more->GetNumberOfCategories(); ++code) {
      codes.push_back(categories->Encode(more->Decode(code)));
    }
    return codes;
  };
  return {join(fNumbers, others.fNumbers), join(fTexts, others.fTexts)};
}

const std::optional<ColumnScan::Sighting>& ColumnScan::GetFirstBeyond() const {
  return IsNumeric() ? fFirstNumberBeyond : fFirstTextBeyond;
}

int ColumnScan::GetCategoryCount() const {
  if (IsBoolean()) return static_cast<int>(GetBooleans().size());
  return IsNumeric() ? fNumbers->GetNumberOfCategories() : fTexts->GetNumberOfCategories();
}

}  // namespace MCBin
