#include "binmodel/export/exportmodel.h"

#include <fmt/format.h>

#include <algorithm>
#include <charconv>
#include <limits>
#include <optional>
#include <utility>

#include "binmodel/model/bincodes.h"
#include "binmodel/model/refusal.h"
#include "binmodel/model/resultselection.h"
#include "binmodel/model/usermissing.h"
#include "binmodel/text/displaytext.h"
#include "binmodel/text/isotime.h"
#include "binmodel/text/number.h"
#include "common/missing.h"

namespace MCBinModel {

namespace {

std::int64_t ParseWhole(const std::string& text) {
  std::int64_t whole = 0;
  const char* const end = text.data() + text.size();
  const auto parsed = std::from_chars(text.data(), end, whole);
  if (parsed.ec != std::errc() || parsed.ptr != end) {
    throw Refusal(RefusalCode::kMissingNotWhole, {{}, text, {}},
                  fmt::format("missing values cannot become {}: the new columns hold whole numbers",
                              QuotedText(text)));
  }
  return whole;
}

double ParseReal(const std::string& text) {
  const ParsedNumber number = ParseNumber(text);
  if (number.kind != NumberKind::kNumber) {
    throw Refusal(RefusalCode::kMissingNotNumber, {{}, text, {}},
                  fmt::format("missing values cannot become {}: the new columns hold numbers",
                              QuotedText(text)));
  }
  return number.value;
}

void AddNumber(std::vector<double>& numbers, double number) {
  const bool known = std::find(numbers.begin(), numbers.end(), number) != numbers.end();
  if (!known) numbers.push_back(number);
}

void AddNumber(std::vector<double>& numbers, const std::string& text) {
  const ParsedNumber number = ParseNumber(text);
  double value = number.value;
  if (number.kind == NumberKind::kInfinite) {
    value = std::numeric_limits<double>::infinity();
    if (TrimBlanks(text).front() == '-') value = -value;
  } else if (number.kind != NumberKind::kNumber) {
    return;
  }
  AddNumber(numbers, value);
}

// Declared missing values, missing texts that are numbers or, of times, times, and the mark of a
// missing number.
std::vector<double> MissingNumbers(const VariableInfo& attribute, const BinSource& source) {
  std::vector<double> numbers;
  if (attribute.kind == VariableKind::kStringCategorical) return numbers;
  for (const double number : attribute.missing.numbers) AddNumber(numbers, number);
  for (const std::string& text : source.missingTexts) {
    const std::optional<double> time = attribute.isTime ? ParseTime(text) : std::nullopt;
    if (time) AddNumber(numbers, *time);
    if (!attribute.isTime) AddNumber(numbers, text);
  }
  if (!attribute.isTime) numbers.push_back(MCMV::Missing());
  return numbers;
}

bool IsMissingCategory(const VariableInfo& attribute, std::size_t code) {
  if (attribute.kind == VariableKind::kNumericCategorical) {
    return MakeNumericUserMissing(attribute.missing)->Contains(attribute.numbers[code]);
  }
  const std::vector<std::string>& missing = attribute.missing.texts;
  return std::find(missing.begin(), missing.end(), attribute.texts[code]) != missing.end();
}

std::vector<ExportColumn::CategoryBin> MakeCategoryBins(const VariableInfo& attribute,
                                                        const AttributeBins& bins,
                                                        bool rightClosed) {
  std::vector<ExportColumn::CategoryBin> categoryBins;
  for (std::size_t bin = 0; bin <= bins.cutPoints.size(); ++bin) {
    std::vector<std::size_t> codes = CodesInBin(attribute, bins.cutPoints, bin, rightClosed);
    std::erase_if(codes, [&](std::size_t code) { return IsMissingCategory(attribute, code); });
    if (!codes.empty()) categoryBins.push_back({bin, std::move(codes)});
  }
  return categoryBins;
}

ExportColumn MakeColumn(const BinModel& model, const AttributeBins& bins,
                        const ExportOptions& options, const BinValue& noValue) {
  const VariableInfo& attribute = model.GetAttribute(bins);
  ExportColumn column{&attribute,
                      &bins.cutPoints,
                      attribute.name + options.suffix,
                      MakeBinValues(model, bins, options.form),
                      MakeCategoryBins(attribute, bins, model.settings.rightClosed),
                      MissingNumbers(attribute, model.source),
                      options.missingText ? noValue : MakeMissingValue(model, bins, options.form)};
  for (BinValue& value : column.values) {
    if (std::holds_alternative<std::monostate>(value)) value = noValue;
  }
  return column;
}

void CheckNames(const BinModel& model, const std::vector<ExportColumn>& columns) {
  const auto has = [](const std::vector<VariableInfo>& variables, const std::string& name) {
    return std::any_of(variables.begin(), variables.end(),
                       [&](const VariableInfo& variable) { return variable.name == name; });
  };
  for (const ExportColumn& column : columns) {
    if (has(model.attributes, column.name) || has(model.targets, column.name)) {
      throw Refusal(RefusalCode::kColumnExists, {{}, column.name, column.attribute->name},
                    fmt::format("there is a column {} already", QuotedText(column.name)));
    }
  }
}

}  // namespace

std::string FormatExportTime(const VariableInfo& attribute, double seconds, bool up) {
  auto time = FormatMicroseconds(seconds, up);
  if (time) return std::move(*time);
  throw Refusal(fmt::format("the column {} has the time {}, which is beyond the years 1 to 9999",
                            QuotedText(attribute.name), FormatNumber(seconds)));
}

BinValue MissingValueOf(const ExportOptions& options) {
  if (!options.missingText) return {};
  switch (options.form) {
    case BinForm::kIndex:
      return ParseWhole(*options.missingText);
    case BinForm::kWeightOfEvidence:
      return ParseReal(*options.missingText);
    case BinForm::kLabel:
      break;
  }
  return *options.missingText;
}

ExportModel MakeExportModel(const BinModel& model, const std::vector<std::size_t>& results,
                            const ExportOptions& options) {
  ExportModel exported{model.settings.rightClosed, options.form, {}};
  const BinValue noValue = MissingValueOf(options);
  std::vector<std::string> notes;
  for (const std::size_t index : LeaveOutFailedResults(model, results, notes)) {
    exported.columns.push_back(MakeColumn(model, model.results[index], options, noValue));
  }
  CheckNames(model, exported.columns);
  return exported;
}

}  // namespace MCBinModel
