#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <vector>

#include "binmodelexport.h"
#include "missingdefinition.h"

namespace MCBinModel {

// What the values of a variable are: numbers to be cut, or categories that are numbers or texts.
enum class VariableKind { kContinuous, kNumericCategorical, kStringCategorical };

// A categorical variable has no more categories than this.
constexpr std::size_t kMostCategories = 256;

// An attribute or a target, as a result needs to know it.
struct MCBINMODEL_API VariableInfo {
  std::string name;  // not empty, and no other variable of the model has it
  VariableKind kind = VariableKind::kContinuous;  // decides which of the lists below is used
  MissingDefinition missing;                      // of this kind
  std::vector<double> numbers;     // categories in code order, of a numeric categorical variable
  std::vector<std::string> texts;  // categories in code order, of a string categorical variable

  // Of a target of two classes: the code of the event that weight of evidence is about, when it was
  // chosen. ChooseEvents() does so by name; GetEvent() is what all ask.
  std::optional<std::size_t> event = std::nullopt;

  // The numbers of a continuous variable are times, in seconds since 1970-01-01T00:00:00Z. As
  // texts, and as they are shown, they are dates and times of ISO 8601, such as 2024-01-31 or
  // 2024-01-31T12:30:00.
  bool isTime = false;

  // Whether it has categories, and how many; 0 of a continuous variable.
  bool IsCategorical() const { return kind != VariableKind::kContinuous; }
  std::size_t GetCategoryCount() const;

  // The category of a code, as text. Requires code < GetCategoryCount().
  std::string GetLabel(std::size_t code) const;

  // A number of a continuous variable as people read it: a time as a date, any other as it is, with
  // all digits.
  std::string FormatValue(double number) const;

  // The code of the event: the chosen one, else what is true (of true and false, yes and no, t and
  // f, y and n in any letter case), the larger number or the text that comes later in byte order,
  // so that it does not depend on the order of the records. Requires two categories.
  std::size_t GetEvent() const;
};

}  // namespace MCBinModel
