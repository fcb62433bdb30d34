#include "metadata/binweightvar.h"

#include "metadata/binroundencoder.h"
#include "metadata/usermissingownership.h"

BINWeightVar::BINWeightVar(const std::string& name, const std::string& label,
                           BINWRoundingOption option)
    : fName(name), fLabel(label), fEncoder(std::make_unique<BINRoundEncoder>(option)) {}

BINWeightVar::BINWeightVar(const BINWeightVar& other)
    : IBINVariable(other),
      fName(other.fName),
      fLabel(other.fLabel),
      fEncoder(other.fEncoder->Clone()),
      fUserMissing(MCBinning::CloneUserMissing(other.fUserMissing.get())) {
  // The encoder's clone still points at the definition of `other`.
  fEncoder->SetUserMissingInfo(fUserMissing.get());
}

BINWeightVar& BINWeightVar::operator=(const BINWeightVar& other) {
  if (this == &other) return *this;
  BINWeightVar copy(other);
  fName.swap(copy.fName);
  fLabel.swap(copy.fLabel);
  fUserMissing.swap(copy.fUserMissing);
  fEncoder->SetUserMissingInfo(fUserMissing.get());
  return *this;
}

// The encoder goes first: it points at the definition.
BINWeightVar::~BINWeightVar() { fEncoder.reset(); }

IBINVariable::MeasureLevel BINWeightVar::GetMeasureLevel() const { return MeasureFrequencyWeight; }

std::string BINWeightVar::GetVariableName() const { return fName; }

std::string BINWeightVar::GetVariableLabel() const { return fLabel; }

void BINWeightVar::SetVariableLabel(const std::string& label) { fLabel = label; }

int BINWeightVar::GetNumberOfCategories() const { return 0; }

IBINVariable::VariableRole BINWeightVar::GetVariableRole() const { return RoleFrequencyWeight; }

void BINWeightVar::SetVariableRole(VariableRole /*role*/) {}

int BINWeightVar::UpdateNumberOfCategories() { return 0; }

bool BINWeightVar::SetUserMissingInfo(IBINUserMissing* userMissing) {
  if (!MCBinning::TakeUserMissing(fUserMissing, userMissing, IBINUserMissing::UserMissingNumeric)) {
    return false;
  }
  fEncoder->SetUserMissingInfo(fUserMissing.get());
  return true;
}

IBINUserMissing* BINWeightVar::GetUserMissingInfo() const { return fUserMissing.get(); }

IBINVariable* BINWeightVar::Clone() const { return new BINWeightVar(*this); }

const IBINEncoder* BINWeightVar::GetEncoder() const { return fEncoder.get(); }

IBINEncoder* BINWeightVar::GetEncoder() { return fEncoder.get(); }

int BINWeightVar::GetVarStatus() { return VarStatusOk; }

std::ostream& BINWeightVar::Display(std::ostream& os) const {
  os << "Frequency weight variable: name = " << fName << ", label = " << fLabel << '\n';
  fEncoder->Display(os);
  if (fUserMissing != nullptr) fUserMissing->Display(os);
  return os;
}
