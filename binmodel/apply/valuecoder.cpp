#include "binmodel/apply/valuecoder.h"

#include <fmt/format.h>

#include <algorithm>
#include <cfloat>
#include <cmath>
#include <cstring>
#include <limits>

#include "binmodel/model/refusal.h"
#include "binmodel/text/displaytext.h"
#include "binmodel/text/isotime.h"
#include "binmodel/text/number.h"
#include "common/missing.h"

namespace MCBinModel {

namespace {

constexpr double kInfinity = std::numeric_limits<double>::infinity();
constexpr CodedValue kMissing = {std::numeric_limits<double>::quiet_NaN()};
constexpr CodedValue kUnknown = {std::numeric_limits<double>::quiet_NaN(), true};

std::string_view ToCode(std::string_view text) { return text; }
template <typename Number>
double ToCode(Number number) {
  return static_cast<double>(number);
}

template <typename Value>
std::size_t CodeColumn(const ValueCoder& coder, const ColumnView<Value>& view, std::size_t count,
                       double* codes) {
  std::size_t unknownCount = 0;
  for (std::size_t i = 0; i < count; ++i) {
    const CodedValue coded = view.IsValid(i) ? coder.Code(ToCode(view[i])) : kMissing;
    codes[i] = coded.value;
    unknownCount += coded.isUnknown ? 1 : 0;
  }
  return unknownCount;
}

}  // namespace

ValueCoder::ValueCoder(const VariableInfo& variable) : fVariable(variable) {
  double code = 0.0;
  for (const double number : variable.numbers) fNumbers.emplace(number, code++);
  code = 0.0;
  for (const std::string& text : variable.texts) fTexts.emplace(text, code++);
}

CodedValue ValueCoder::Code(double number) const {
  if (std::isnan(number) || MCMV::IsMissing(number)) return kMissing;
  if (fVariable.kind == VariableKind::kStringCategorical) return kUnknown;
  if (fVariable.IsCategorical() && std::isinf(number)) return kUnknown;
  if (IsUserMissing(number)) return kMissing;
  return fVariable.IsCategorical() ? CodeCategory(number) : CodedValue{number};
}

CodedValue ValueCoder::Code(std::string_view text) const {
  if (fVariable.kind == VariableKind::kStringCategorical) return CodeCategory(text);
  const ParsedNumber number = ParseNumber(text);
  if (fVariable.isTime && number.kind != NumberKind::kNaN) return CodeTime(text);
  switch (number.kind) {
    case NumberKind::kNaN:
      return kMissing;
    case NumberKind::kInfinite:
      return Code(TrimBlanks(text).front() == '-' ? -kInfinity : kInfinity);
    case NumberKind::kNumber:
      return Code(number.value);
    case NumberKind::kText:
      break;
  }
  if (fVariable.IsCategorical()) return kUnknown;
  throw Refusal(
      RefusalCode::kTextAmongNumbers, {{}, fVariable.name, std::string(text)},
      fmt::format("{} in column {} is not a number", QuotedText(text), QuotedText(fVariable.name)));
}

CodedValue ValueCoder::CodeTime(std::string_view text) const {
  const auto seconds = ParseTime(text);
  if (seconds) return Code(*seconds);
  throw Refusal(RefusalCode::kTextAmongNumbers, {{}, fVariable.name, std::string(text)},
                fmt::format("{} in column {} is not a date as ISO 8601 writes it, which the bins "
                            "are of",
                            QuotedText(text), QuotedText(fVariable.name)));
}

CodedValue ValueCoder::CodeCategory(double number) const {
  const auto found = fNumbers.find(number);
  return found == fNumbers.end() ? kUnknown : CodedValue{found->second};
}

CodedValue ValueCoder::CodeCategory(std::string_view text) const {
  const std::vector<std::string>& missing = fVariable.missing.texts;
  if (std::find(missing.begin(), missing.end(), text) != missing.end()) return kMissing;
  const auto found = fTexts.find(text);
  return found == fTexts.end() ? kUnknown : CodedValue{found->second};
}

bool ValueCoder::IsUserMissing(double number) const {
  const MissingDefinition& missing = fVariable.missing;
  for (const double value : missing.numbers) {
    if (value == number) return true;
  }
  if (!missing.interval) return false;
  const double low = missing.interval->low == -DBL_MAX ? -kInfinity : missing.interval->low;
  const double high = missing.interval->high == DBL_MAX ? kInfinity : missing.interval->high;
  return low <= number && number <= high;
}

std::size_t ValueCoder::Code(const ColumnView<double>& view, std::size_t count,
                             double* codes) const {
  if (!fVariable.IsCategorical() && fVariable.missing.IsEmpty() && view.validity == nullptr) {
    if (view.stride != sizeof(double)) {
      for (std::size_t i = 0; i < count; ++i) codes[i] = view[i];
    } else if (view.values != codes) {
      std::memcpy(codes, view.values, count * sizeof(double));
    }
    const double missing = MCMV::Missing();
    for (std::size_t i = 0; i < count; ++i) {  // several values at a time
      codes[i] = codes[i] == missing ? kMissing.value : codes[i];
    }
    return 0;
  }
  return CodeColumn(*this, view, count, codes);
}

std::size_t ValueCoder::Code(const ColumnView<float>& view, std::size_t count,
                             double* codes) const {
  return CodeColumn(*this, view, count, codes);
}

std::size_t ValueCoder::Code(const ColumnView<std::int32_t>& view, std::size_t count,
                             double* codes) const {
  return CodeColumn(*this, view, count, codes);
}

std::size_t ValueCoder::Code(const ColumnView<std::int64_t>& view, std::size_t count,
                             double* codes) const {
  return CodeColumn(*this, view, count, codes);
}

std::size_t ValueCoder::Code(const ColumnView<std::string_view>& view, std::size_t count,
                             double* codes) const {
  return CodeColumn(*this, view, count, codes);
}

}  // namespace MCBinModel
