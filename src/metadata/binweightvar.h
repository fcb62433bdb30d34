#pragma once

#include <memory>
#include <string>

#include "../common/export.h"
#include "ibinencoder.h"
#include "ibinusermissing.h"
#include "ibinvariable.h"

// The frequency weight: says how many cases a record stands for. Its encoder, a
// BINRoundEncoder, makes the weights whole numbers and points at the variable's own
// user-missing definition. Its role is always RoleFrequencyWeight.
class MCBINNING_API BINWeightVar : public IBINVariable {
 public:
  // `option` says how weights are rounded. No value is user-missing yet.
  BINWeightVar(const std::string& name, const std::string& label, BINWRoundingOption option);

  // A deep copy, the rounding option and the user-missing definition included.
  BINWeightVar(const BINWeightVar& other);

  // Takes over name, label and user-missing definition; the rounding option stays.
  BINWeightVar& operator=(const BINWeightVar& other);
  ~BINWeightVar() override;

  MeasureLevel GetMeasureLevel() const override;
  std::string GetVariableName() const override;
  std::string GetVariableLabel() const override;
  void SetVariableLabel(const std::string& label) override;
  int GetNumberOfCategories() const override;
  VariableRole GetVariableRole() const override;
  void SetVariableRole(VariableRole role) override;
  int UpdateNumberOfCategories() override;

  // Takes numeric definitions.
  bool SetUserMissingInfo(IBINUserMissing* userMissing) override;

  IBINUserMissing* GetUserMissingInfo() const override;

  IBINVariable* Clone() const override;

  // Never null.
  const IBINEncoder* GetEncoder() const override;
  IBINEncoder* GetEncoder() override;

  int GetVarStatus() override;
  std::ostream& Display(std::ostream& os) const override;

 private:
  std::string fName;
  std::string fLabel;
  std::unique_ptr<IBINEncoder> fEncoder;
  std::unique_ptr<IBINUserMissing> fUserMissing;
};
