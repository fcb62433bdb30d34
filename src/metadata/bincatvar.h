#pragma once

#include <memory>
#include <string>

#include "../common/export.h"
#include "ibinencoder.h"
#include "ibinvariable.h"

// A categorical variable, attribute or target. Its encoder codes the categories and owns
// the user-missing definition.
class MCBINNING_API BINCatVar : public IBINVariable {
 public:
  // `numberOfCategories` is the count to begin with; the encoder starts empty. Level
  // MeasureNumericCategorical gives a BINCatNumEncoder, every other a BINStringEncoder.
  BINCatVar(const std::string& name, const std::string& label, int numberOfCategories,
            MeasureLevel level, VariableRole role);

  // Copies are deep, the encoder and its user-missing definition included.
  BINCatVar(const BINCatVar& other);
  BINCatVar& operator=(const BINCatVar& other);
  ~BINCatVar() override;

  MeasureLevel GetMeasureLevel() const override;
  std::string GetVariableName() const override;
  std::string GetVariableLabel() const override;
  void SetVariableLabel(const std::string& label) override;
  int GetNumberOfCategories() const override;
  VariableRole GetVariableRole() const override;
  void SetVariableRole(VariableRole role) override;
  int UpdateNumberOfCategories() override;

  // Takes what the encoder takes: numeric or string definitions.
  bool SetUserMissingInfo(IBINUserMissing* userMissing) override;

  IBINUserMissing* GetUserMissingInfo() const override;

  IBINVariable* Clone() const override;

  // Never null.
  const IBINEncoder* GetEncoder() const override;
  IBINEncoder* GetEncoder() override;

  // A variable whose encoder is still empty is judged by its declared count.
  int GetVarStatus() override;

  std::ostream& Display(std::ostream& os) const override;

  // Stores any count; one below that of the encoder lasts until the next update.
  void SetNumberOfCategories(int numberOfCategories);

 private:
  std::string fName;
  std::string fLabel;
  VariableRole fRole;
  int fNumberOfCategories;
  MeasureLevel fMeasureLevel;
  std::unique_ptr<IBINEncoder> fEncoder;
};
