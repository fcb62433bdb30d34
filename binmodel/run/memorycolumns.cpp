#include "binmodel/run/memorycolumns.h"

#include <fmt/format.h>

#include <algorithm>
#include <cmath>
#include <memory>
#include <string>
#include <string_view>
#include <utility>

#include "binmodel/model/refusal.h"
#include "binmodel/model/usermissing.h"
#include "binmodel/text/displaytext.h"
#include "binmodel/text/number.h"
#include "common/missing.h"
#include "metadata/bincatnumencoder.h"
#include "metadata/binstringencoder.h"

namespace MCBinModel {

namespace {

constexpr std::size_t kRecordsPerBlock = 4096;
constexpr std::int16_t kNoCode = -1;

template <typename Value>
auto ReadNumbers(const ColumnView<Value>& view) {
  const bool isPlain =
      view.validity == nullptr && view.stride == static_cast<std::ptrdiff_t>(sizeof(Value));
  return [view, isPlain](std::size_t first, std::size_t count, double* values) {
    if (isPlain) {  // several values at a time
      const ColumnView<Value> plain{view.values};
      for (std::size_t i = 0; i < count; ++i) values[i] = static_cast<double>(plain[first + i]);
      return;
    }
    for (std::size_t i = 0; i < count; ++i) {
      values[i] = view.IsValid(first + i) ? static_cast<double>(view[first + i]) : MCMV::Missing();
    }
  };
}

std::string TextOf(double number) { return FormatNumber(number); }
std::string TextOf(std::string_view text) { return std::string(text); }

// The codes of a column, from 0 in the order of the categories. `encode` gives a category that it
// does not know the next code.
template <typename Value, typename Encode>
std::vector<std::int16_t> MakeCodes(const ColumnView<Value>& view, std::size_t recordCount,
                                    const VariableInfo& variable, const Encode& encode) {
  std::vector<std::int16_t> codes(recordCount, kNoCode);
  for (std::size_t i = 0; i < recordCount; ++i) {
    if (!view.IsValid(i)) continue;
    const double code = encode(view[i]);
    if (code >= static_cast<double>(kMostCategories)) {
      const std::string beyond = TextOf(view[i]);
      throw Refusal(RefusalCode::kTooManyCategories,
                    {.place = {}, .subject = variable.name, .detail = beyond},
                    fmt::format("column {}: a categorical column has at most {} different values, "
                                "{} is one too many",
                                QuotedText(variable.name), kMostCategories, QuotedText(beyond)));
    }
    codes[i] = static_cast<std::int16_t>(code);
  }
  return codes;
}

auto ReadCodes(std::vector<std::int16_t> codes) {
  return [codes = std::move(codes)](std::size_t first, std::size_t count, double* values) {
    const auto begin = codes.begin() + static_cast<std::ptrdiff_t>(first);
    std::copy_n(begin, count, values);
  };
}

}  // namespace

std::size_t MemoryColumns::Add(const ColumnView<double>& view) {
  return AddColumn(ReadNumbers(view));
}

std::size_t MemoryColumns::Add(const ColumnView<float>& view) {
  return AddColumn(ReadNumbers(view));
}

std::size_t MemoryColumns::Add(const ColumnView<std::int32_t>& view) {
  return AddColumn(ReadNumbers(view));
}

std::size_t MemoryColumns::Add(const ColumnView<std::int64_t>& view) {
  return AddColumn(ReadNumbers(view));
}

std::size_t MemoryColumns::AddColumn(ReadValues read) {
  fColumns.push_back(std::move(read));
  return fColumns.size() - 1;
}

std::size_t MemoryColumns::AddCategories(const ColumnView<double>& view, VariableInfo& variable) {
  BINCatNumEncoder encoder(variable.numbers);
  encoder.SetUserMissingInfo(MakeNumericUserMissing(variable.missing).release());
  const auto encode = [&](double number) {
    if (!std::isinf(number)) return encoder.Encode(number);
    throw Refusal(RefusalCode::kInput, {.place = {}, .subject = variable.name, .detail = {}},
                  fmt::format("column {}: an infinite number cannot be a category",
                              QuotedText(variable.name)));
  };
  const std::size_t column = AddColumn(ReadCodes(MakeCodes(view, fRecordCount, variable, encode)));
  variable.kind = VariableKind::kNumericCategorical;
  variable.numbers.clear();
  for (int code = 0; code < encoder.GetNumberOfCategories(); ++code) {
    variable.numbers.push_back(encoder.Decode(code));
  }
  return column;
}

std::size_t MemoryColumns::AddCategories(const ColumnView<std::string_view>& view,
                                         VariableInfo& variable) {
  BINStringEncoder encoder(variable.texts);
  encoder.SetUserMissingInfo(MakeStringUserMissing(variable.missing).release());
  std::string text;  // reused: the encoder wants a std::string
  const auto encode = [&](std::string_view category) {
    text.assign(category);
    return encoder.Encode(text);
  };
  const std::size_t column = AddColumn(ReadCodes(MakeCodes(view, fRecordCount, variable, encode)));
  variable.kind = VariableKind::kStringCategorical;
  variable.texts.clear();
  for (int code = 0; code < encoder.GetNumberOfCategories(); ++code) {
    variable.texts.push_back(encoder.Decode(code));
  }
  return column;
}

std::size_t MemoryColumns::GetRecordsPerBlock() const { return kRecordsPerBlock; }

void MemoryColumns::Read(std::size_t block, std::size_t column, double* values) const {
  const std::size_t first = block * kRecordsPerBlock;
  fColumns.at(column)(first, std::min(kRecordsPerBlock, fRecordCount - first), values);
}

}  // namespace MCBinModel
