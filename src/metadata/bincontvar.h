#pragma once

#include <memory>
#include <string>

#include "../common/export.h"
#include "ibinusermissing.h"
#include "ibinvariable.h"

// A continuous attribute: its values are binned as they are, so it has no encoder and no
// categories.
class MCBINNING_API BINContVar : public IBINVariable {
 public:
  // Any role is stored. No value is user-missing yet.
  BINContVar(const std::string& name, const std::string& label, VariableRole role);

  // Copies are deep, the user-missing definition included.
  BINContVar(const BINContVar& other);
  BINContVar& operator=(const BINContVar& other);
  ~BINContVar() override;

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
  const IBINEncoder* GetEncoder() const override;
  IBINEncoder* GetEncoder() override;
  int GetVarStatus() override;

  // Does not show the user-missing definition.
  std::ostream& Display(std::ostream& os) const override;

 private:
  std::string fName;
  std::string fLabel;
  VariableRole fRole;
  std::unique_ptr<IBINUserMissing> fUserMissing;
};
