#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <map>
#include <string>
#include <string_view>

#include "../model/binmodelexport.h"
#include "../model/variableinfo.h"
#include "columnview.h"

namespace MCBinModel {

// A value as bins see it: a number as it is, a category as the code that the variable gave it.
struct CodedValue {
  double value;            // NaN when there is none
  bool isUnknown = false;  // a category that the variable does not have; there is no value then

  // Whether there is no value.
  bool IsMissing() const { return value != value; }
};

// Codes the values of a variable, as the run that made the bins did.
//
//   Missing   NaN, MCMV::gMissingValue, a text "nan" of a variable of numbers, what the variable's
//             definition says, and an unknown category. An open end of an interval of missing
//             values takes in the infinity.
//   Infinity  a number like any other, and an unknown category.
//   Threads   any number may code at the same time.
class MCBINMODEL_API ValueCoder {
 public:
  // Borrows the variable, which must not change.
  explicit ValueCoder(const VariableInfo& variable);

  // A number; unknown to a variable of texts, unless it is a missing one.
  CodedValue Code(double number) const;

  // A text. Of a variable of numbers it is read as one, whatever the locale, and of one of times as
  // a time; throws Refusal (RefusalCode::kTextAmongNumbers) for one that is none in a continuous
  // variable.
  CodedValue Code(std::string_view text) const;

  // The first `count` values of a column into `codes`, NaN where there is none. Answers how many
  // of them were unknown categories.
  std::size_t Code(const ColumnView<double>& view, std::size_t count, double* codes) const;
  std::size_t Code(const ColumnView<float>& view, std::size_t count, double* codes) const;
  std::size_t Code(const ColumnView<std::int32_t>& view, std::size_t count, double* codes) const;
  std::size_t Code(const ColumnView<std::int64_t>& view, std::size_t count, double* codes) const;
  std::size_t Code(const ColumnView<std::string_view>& view, std::size_t count,
                   double* codes) const;

 private:
  bool IsUserMissing(double number) const;
  CodedValue CodeTime(std::string_view text) const;
  CodedValue CodeCategory(double number) const;
  CodedValue CodeCategory(std::string_view text) const;

  const VariableInfo& fVariable;
  std::map<double, double> fNumbers;  // codes of the categories
  std::map<std::string, double, std::less<>> fTexts;
};

}  // namespace MCBinModel
