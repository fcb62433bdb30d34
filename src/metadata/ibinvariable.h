#pragma once

#include <ostream>
#include <string>

#include "../common/export.h"

class IBINEncoder;
class IBINUserMissing;

// The metadata of one column of the host's records: name, label, measure level, role, and
// what it takes to turn raw values into numbers.
//
// BINContVar, BINCatVar and BINWeightVar are the three kinds. A BINVarList creates, owns
// and deletes them. Constructors, copies, Clone(), and what takes or returns a text may throw
// std::bad_alloc; a variable that was to be changed is then as it was.
class MCBINNING_API IBINVariable {
 public:
  // What the values are; the numbers are part of the interface.
  enum MeasureLevel : int {
    MeasureUnknown = 0,
    MeasureContinuous = 1,
    MeasureNumericCategorical = 2,
    MeasureStringCategorical = 3,
    MeasureFrequencyWeight = 4
  };

  // What binning does with the variable.
  enum VariableRole : int {
    RoleUndefined = 0,
    RoleAttribute = 1,
    RoleTarget = 2,
    RoleFrequencyWeight = 3
  };

  // How a frequency weight becomes a whole number: the next one below, or the closest one
  // with halves going up.
  enum BINWRoundingOption : int { RoundTruncate = 0, RoundClosest = 1 };

  // What GetVarStatus() returns: usable, or a categorical variable with too few categories.
  enum VarStatus : int { VarStatusOk = 0, VarStatusOneCategory = 1, VarStatusNoCategory = 2 };

  virtual ~IBINVariable();

  // As given at creation.
  virtual MeasureLevel GetMeasureLevel() const = 0;
  virtual std::string GetVariableName() const = 0;

  // A text for people; any will do.
  virtual std::string GetVariableLabel() const = 0;
  virtual void SetVariableLabel(const std::string& label) = 0;

  // The number of categories as last known, see UpdateNumberOfCategories(); 0 for a
  // variable that is not categorical.
  virtual int GetNumberOfCategories() const = 0;

  // As given at creation or set last.
  virtual VariableRole GetVariableRole() const = 0;

  // Stores any role. The target index of the variable list does not follow, so use the
  // list's operation of this name. A weight variable keeps its role.
  virtual void SetVariableRole(VariableRole role) = 0;

  // Raises the known number of categories to that of the encoder and returns it; it never
  // falls. 0 for a variable that is not categorical.
  virtual int UpdateNumberOfCategories() = 0;

  // Takes a definition of the data type that fits the variable, or null for none, deleting
  // the one held. The variable owns it from then on. False for the other data type:
  // nothing changes and the caller keeps the object.
  virtual bool SetUserMissingInfo(IBINUserMissing* userMissing) = 0;

  // Stays the variable's; null when there is none.
  virtual IBINUserMissing* GetUserMissingInfo() const = 0;

  // A deep copy; the caller deletes it.
  virtual IBINVariable* Clone() const = 0;

  // Stays the variable's; null for a continuous variable.
  virtual const IBINEncoder* GetEncoder() const = 0;
  virtual IBINEncoder* GetEncoder() = 0;

  // A VarStatus, judged after UpdateNumberOfCategories().
  virtual int GetVarStatus() = 0;

  // Writes a readable dump, in the stream's own formatting.
  virtual std::ostream& Display(std::ostream& os) const = 0;

 protected:
  // The base class holds nothing.
  IBINVariable() = default;
  IBINVariable(const IBINVariable&) = default;
  IBINVariable& operator=(const IBINVariable&) = default;
};

namespace MCBinning {

// Writes the value in words and an end of line.
MCBINNING_API std::ostream& Display(std::ostream& os, IBINVariable::MeasureLevel level);
MCBINNING_API std::ostream& Display(std::ostream& os, IBINVariable::VariableRole role);
MCBINNING_API std::ostream& Display(std::ostream& os, IBINVariable::BINWRoundingOption option);

}  // namespace MCBinning
