#include "cli/columnscan.h"

#include "cli/number.h"
#include "cli/usermissing.h"

namespace MCBin {

namespace {

ColumnScan::Sighting MakeSighting(std::uint64_t line, std::string_view text) {
  constexpr std::size_t kShownBytes = 100;
  return {line, std::string(text.substr(0, kShownBytes)), text.size()};
}

}  // namespace

ColumnScan::ColumnScan(const ColumnRequest& request) {
  if (!request.MayBeCategorical()) return;
  fNumbers.emplace(kMaxCategories + 1);
  fTexts.emplace(kMaxCategories + 1);
  if (request.missing.IsEmpty()) return;
  fNumbers->SetUserMissingInfo(MakeNumericUserMissing(request.missing).release());
  fTexts->SetUserMissingInfo(MakeStringUserMissing(request.missing).release());
}

void ColumnScan::Add(std::string_view text, std::uint64_t line, bool counts) {
  if (!fFirstText && !MayBeNumeric(text, line, counts)) {
    fFirstText = MakeSighting(line, text);
    fNumbers.reset();
  }
  if (fTexts && counts) AddText(text, line);
}

bool ColumnScan::MayBeNumeric(std::string_view text, std::uint64_t line, bool counts) {
  const ParsedNumber number = ParseNumber(text);
  if (number.kind == NumberKind::kText) return false;
  if (number.kind == NumberKind::kInfinite && !fFirstInfinite) {
    fFirstInfinite = MakeSighting(line, text);
  }
  if (number.kind != NumberKind::kNumber || !fNumbers || !counts) return true;
  fNumbers->Encode(number.value);
  if (fNumbers->GetNumberOfCategories() > kMaxCategories) {
    fFirstNumberBeyond = MakeSighting(line, text);
    fNumbers.reset();
  }
  return true;
}

void ColumnScan::AddText(std::string_view text, std::uint64_t line) {
  const bool tooLong = text.size() > kMaxCategoryBytes;
  if (!tooLong) {
    fTextBuffer.assign(text);
    fTexts->Encode(fTextBuffer);
  }
  if (tooLong || fTexts->GetNumberOfCategories() > kMaxCategories) {
    fFirstTextBeyond = MakeSighting(line, text);
    fTexts.reset();
  }
}

const std::optional<ColumnScan::Sighting>& ColumnScan::GetFirstBeyond() const {
  return IsNumeric() ? fFirstNumberBeyond : fFirstTextBeyond;
}

int ColumnScan::GetCategoryCount() const {
  return IsNumeric() ? fNumbers->GetNumberOfCategories() : fTexts->GetNumberOfCategories();
}

}  // namespace MCBin
