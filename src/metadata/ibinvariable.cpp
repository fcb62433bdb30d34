#include "metadata/ibinvariable.h"

IBINVariable::~IBINVariable() = default;

namespace MCBinning {

std::ostream& Display(std::ostream& os, IBINVariable::MeasureLevel level) {
  switch (level) {
    case IBINVariable::MeasureUnknown:
      return os << "Unknown measure level\n";
    case IBINVariable::MeasureContinuous:
      return os << "Continuous\n";
    case IBINVariable::MeasureNumericCategorical:
      return os << "Numeric Categorical\n";
    case IBINVariable::MeasureStringCategorical:
      return os << "String Categorical\n";
    case IBINVariable::MeasureFrequencyWeight:
      return os << "Frequency weight\n";
  }
  return os << "Measure level " << static_cast<int>(level) << '\n';
}

std::ostream& Display(std::ostream& os, IBINVariable::VariableRole role) {
  switch (role) {
    case IBINVariable::RoleUndefined:
      return os << "Undefined variable role\n";
    case IBINVariable::RoleAttribute:
      return os << "Attribute\n";
    case IBINVariable::RoleTarget:
      return os << "Target\n";
    case IBINVariable::RoleFrequencyWeight:
      return os << "Frequency weight\n";
  }
  return os << "Variable role " << static_cast<int>(role) << '\n';
}

std::ostream& Display(std::ostream& os, IBINVariable::BINWRoundingOption option) {
  switch (option) {
    case IBINVariable::RoundTruncate:
      return os << "Truncate to smaller int\n";
    case IBINVariable::RoundClosest:
      return os << "Round to closest int\n";
  }
  return os << '\n';
}

}  // namespace MCBinning
