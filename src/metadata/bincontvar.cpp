#include "metadata/bincontvar.h"

#include "metadata/usermissingownership.h"

BINContVar::BINContVar(const std::string& name, const std::string& label, VariableRole role)
    : fName(name), fLabel(label), fRole(role) {}

BINContVar::BINContVar(const BINContVar& other)
    : IBINVariable(other),
      fName(other.fName),
      fLabel(other.fLabel),
      fRole(other.fRole),
      fUserMissing(MCBinning::CloneUserMissing(other.fUserMissing.get())) {}

BINContVar& BINContVar::operator=(const BINContVar& other) {
  if (this == &other) return *this;
  BINContVar copy(other);
  fName.swap(copy.fName);
  fLabel.swap(copy.fLabel);
  fRole = copy.fRole;
  fUserMissing.swap(copy.fUserMissing);
  return *this;
}

BINContVar::~BINContVar() = default;

IBINVariable::MeasureLevel BINContVar::GetMeasureLevel() const { return MeasureContinuous; }

std::string BINContVar::GetVariableName() const { return fName; }

std::string BINContVar::GetVariableLabel() const { return fLabel; }

void BINContVar::SetVariableLabel(const std::string& label) { fLabel = label; }

int BINContVar::GetNumberOfCategories() const { return 0; }

IBINVariable::VariableRole BINContVar::GetVariableRole() const { return fRole; }

void BINContVar::SetVariableRole(VariableRole role) { fRole = role; }

int BINContVar::UpdateNumberOfCategories() { return 0; }

bool BINContVar::SetUserMissingInfo(IBINUserMissing* userMissing) {
  return MCBinning::TakeUserMissing(fUserMissing, userMissing, IBINUserMissing::UserMissingNumeric);
}

IBINUserMissing* BINContVar::GetUserMissingInfo() const { return fUserMissing.get(); }

IBINVariable* BINContVar::Clone() const { return new BINContVar(*this); }

const IBINEncoder* BINContVar::GetEncoder() const { return nullptr; }

IBINEncoder* BINContVar::GetEncoder() { return nullptr; }

int BINContVar::GetVarStatus() { return VarStatusOk; }

std::ostream& BINContVar::Display(std::ostream& os) const {
  os << "Continuous variable: name = " << fName << ", label = " << fLabel << ", role = ";
  return MCBinning::Display(os, fRole);
}
