#include "metadata/bincatvar.h"

#include <algorithm>

#include "metadata/bincatnumencoder.h"
#include "metadata/binstringencoder.h"

namespace {

std::unique_ptr<IBINEncoder> MakeEncoder(IBINVariable::MeasureLevel level, int capacity) {
  if (level == IBINVariable::MeasureNumericCategorical) {
    return std::make_unique<BINCatNumEncoder>(capacity);
  }
  return std::make_unique<BINStringEncoder>(capacity);
}

}  // namespace

BINCatVar::BINCatVar(const std::string& name, const std::string& label, int numberOfCategories,
                     MeasureLevel level, VariableRole role)
    : fName(name),
      fLabel(label),
      fRole(role),
      fNumberOfCategories(numberOfCategories),
      fMeasureLevel(level),
      fEncoder(MakeEncoder(level, numberOfCategories)) {}

BINCatVar::BINCatVar(const BINCatVar& other)
    : IBINVariable(other),
      fName(other.fName),
      fLabel(other.fLabel),
      fRole(other.fRole),
      fNumberOfCategories(other.fNumberOfCategories),
      fMeasureLevel(other.fMeasureLevel),
      fEncoder(other.fEncoder->Clone()) {}

BINCatVar& BINCatVar::operator=(const BINCatVar& other) {
  if (this == &other) return *this;
  BINCatVar copy(other);
  fName.swap(copy.fName);
  fLabel.swap(copy.fLabel);
  fRole = copy.fRole;
  fNumberOfCategories = copy.fNumberOfCategories;
  fMeasureLevel = copy.fMeasureLevel;
  fEncoder.swap(copy.fEncoder);
  return *this;
}

BINCatVar::~BINCatVar() = default;

IBINVariable::MeasureLevel BINCatVar::GetMeasureLevel() const { return fMeasureLevel; }

std::string BINCatVar::GetVariableName() const { return fName; }

std::string BINCatVar::GetVariableLabel() const { return fLabel; }

void BINCatVar::SetVariableLabel(const std::string& label) { fLabel = label; }

int BINCatVar::GetNumberOfCategories() const { return fNumberOfCategories; }

IBINVariable::VariableRole BINCatVar::GetVariableRole() const { return fRole; }

void BINCatVar::SetVariableRole(VariableRole role) { fRole = role; }

int BINCatVar::UpdateNumberOfCategories() {
  fNumberOfCategories = std::max(fNumberOfCategories, fEncoder->GetNumberOfCategories());
  return fNumberOfCategories;
}

bool BINCatVar::SetUserMissingInfo(IBINUserMissing* userMissing) {
  return fEncoder->SetUserMissingInfo(userMissing);
}

IBINUserMissing* BINCatVar::GetUserMissingInfo() const { return fEncoder->GetUserMissingInfo(); }

IBINVariable* BINCatVar::Clone() const { return new BINCatVar(*this); }

const IBINEncoder* BINCatVar::GetEncoder() const { return fEncoder.get(); }

IBINEncoder* BINCatVar::GetEncoder() { return fEncoder.get(); }

int BINCatVar::GetVarStatus() {
  const int categoryCount = UpdateNumberOfCategories();
  if (categoryCount == 1) return VarStatusOneCategory;
  return categoryCount <= 0 ? VarStatusNoCategory : VarStatusOk;
}

std::ostream& BINCatVar::Display(std::ostream& os) const {
  os << "Categorical variable: name = " << fName << ", label = " << fLabel << ", role = ";
  MCBinning::Display(os, fRole);
  os << "\tMeasurement Level = ";
  MCBinning::Display(os, fMeasureLevel);
  os << "\tNumber of Categories = " << fNumberOfCategories << '\n';
  return fEncoder->Display(os);
}

void BINCatVar::SetNumberOfCategories(int numberOfCategories) {
  fNumberOfCategories = numberOfCategories;
}
