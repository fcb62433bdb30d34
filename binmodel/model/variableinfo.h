#pragma once

#include <array>
#include <cstddef>
#include <string>
#include <vector>

#include "binmodel/model/missingdefinition.h"

namespace MCBinModel {

enum class VariableKind { kContinuous, kNumericCategorical, kStringCategorical };

// The kinds in bin files, in the order of VariableKind.
constexpr std::array<const char*, 3> kKindNames = {"continuous", "numeric-categorical",
                                                   "string-categorical"};

// A categorical variable has no more categories than this.
constexpr std::size_t kMostCategories = 256;

// What a result needs to know about an attribute or a target.
struct VariableInfo {
  std::string name;
  VariableKind kind = VariableKind::kContinuous;
  MissingDefinition missing;
  std::vector<double> numbers;     // categories in code order, of a numeric categorical variable
  std::vector<std::string> texts;  // categories in code order, of a string categorical variable

  bool IsCategorical() const { return kind != VariableKind::kContinuous; }
  std::size_t GetCategoryCount() const;

  // The category of a code, as text. Requires code < GetCategoryCount().
  std::string GetLabel(std::size_t code) const;
};

}  // namespace MCBinModel
