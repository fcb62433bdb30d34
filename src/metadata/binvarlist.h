#pragma once

#include <cstddef>
#include <memory>
#include <ostream>
#include <string>
#include <unordered_set>
#include <vector>

#include "../common/export.h"
#include "ibinvariable.h"

// The host's description of its data: the variables in the order of the record's positions,
// and which of them are target and frequency weight.
//
//   Indexes   a variable's position is its index everywhere: in records, attribute and
//             target lists, results and status details. Removing a variable moves the later
//             ones down.
//   Names     continuous and categorical variables need a name of their own, compared byte
//             by byte; the weight variable may bear any.
//   Owner     the list owns its variables. Pointers that it hands out are valid until the
//             variable is removed or the list is assigned to or deleted. Copies are deep.
//   Adding    returns the index of the new variable, or -1 when it is refused: its name is
//             empty or taken, fewer than 2 categories are listed, or a continuous variable is
//             to be target.
//   Failure   what is refused changes nothing. When memory runs out std::bad_alloc is
//             thrown, by whatever adds, copies or shows variables or hands out texts, and the
//             list is as it was.
//   Cost      adding takes constant time, and linear time for a name that is taken or once
//             GetVarAt() has handed out a variable that may be changed. FindVariable() and
//             RemoveVar() are linear.
//
// A list that is to be binned gives every variable a defined role and at most one variable
// the target role; the run checks that with an assertion that ends the program.
class MCBINNING_API BINVarList {
 public:
  // Empty, without target and weight.
  BINVarList();

  // Copies are deep: the variables, their encoders and user-missing definitions too.
  BINVarList(const BINVarList& other);
  BINVarList& operator=(const BINVarList& other);
  virtual ~BINVarList();

  // A continuous variable.
  int AddContVar(const std::string& name, const std::string& label,
                 IBINVariable::VariableRole role);

  // A categorical variable whose categories are seen later. Any level other than
  // MeasureNumericCategorical gives it a string encoder. A new variable of target role
  // becomes the list's target, whatever was the target before; so in the forms below.
  int AddCatVar(const std::string& name, const std::string& label, int numberOfCategories,
                IBINVariable::MeasureLevel level, IBINVariable::VariableRole role);

  // A categorical variable with these categories, coded 0, 1, 2, ... in order. Its count is
  // the number of values given, repeated ones included. A braced list of exactly two
  // string literals fits both types of values: write the vector type out.
  int AddCatVar(const std::string& name, const std::string& label,
                const std::vector<double>& values, IBINVariable::VariableRole role);
  int AddCatVar(const std::string& name, const std::string& label,
                const std::vector<std::string>& values, IBINVariable::VariableRole role);

  // The same with value labels. Label i belongs to code i, which is value i unless values
  // are repeated.
  int AddCatVar(const std::string& name, const std::string& label,
                const std::vector<double>& values, const std::vector<std::string>& labels,
                IBINVariable::VariableRole role);
  int AddCatVar(const std::string& name, const std::string& label,
                const std::vector<std::string>& values, const std::vector<std::string>& labels,
                IBINVariable::VariableRole role);

  // Refused when the list has a weight variable already; the name is not checked.
  int AddWeightVar(const std::string& name, const std::string& label,
                   IBINVariable::BINWRoundingOption option);

  // The number of variables.
  int Size() const;

  // The lowest index with that name, or -1.
  int FindVariable(const std::string& name) const;

  // The variable at index i; null when that is out of range.
  const IBINVariable* GetVarAt(int i) const;
  IBINVariable* GetVarAt(int i);

  // Its encoder, which stays the variable's; null when i is out of range or it has none.
  const IBINEncoder* GetEncoderAt(int i) const;
  IBINEncoder* GetEncoderAt(int i);

  // Its role; RoleUndefined when i is out of range.
  IBINVariable::VariableRole GetVariableRole(int i) const;

  // The index of the recorded target; -1 when there is none.
  int GetTargetIndex() const { return fTargetIndex; }

  // The index of the weight variable; -1 when there is none.
  int GetWeightIndex() const { return fWeightIndex; }

  // How many continuous and categorical variables; the weight variable counts as neither.
  int GetNumContVar() const { return fNumContVar; }
  int GetNumCatVar() const { return fNumCatVar; }

  // The number of variables with the attribute role.
  int GetNumAttributeVars() const;

  // The number of categories of the first variable with the target role; 0 without one.
  int GetNTargetCats() const;

  // The names of all attributes in order, and of the last variable with the target role;
  // `targetName` stays as it was when there is none.
  void GetVarNames(std::vector<std::string>& attributeNames, std::string& targetName) const;

  // Changes a role, also of a continuous variable to target; a weight variable keeps its
  // role. A target that the list has already stays the recorded one, and taking the target
  // role from any variable leaves the list without recorded target. False when i is out of
  // range.
  bool SetVariableRole(int i, IBINVariable::VariableRole role);

  // Declares one value missing. False when i is out of range or the value does not fit the
  // variable's measure level (a number for MeasureStringCategorical, a string for any other).
  // True does not mean that the value is used: where the variable's encoder takes no such
  // definition, or a definition of the host's own class is held, nothing changes.
  bool AddDiscreteUserMissing(int i, double value, const std::string& label);
  bool AddDiscreteUserMissing(int i, const std::string& value, const std::string& label);

  // Declares [low, high] missing; contains nothing when low > high. True and false as for a
  // discrete number; false, too, when the variable has a missing interval already.
  bool SetMissingInterval(int i, double low, double high);

  // Brings the counts of all categorical variables up to date and returns their sum, the largest
  // int when it is more.
  int UpdateNumbersOfCategories();

  // Deletes the variable and closes the gap. The count of its measure level goes down: that of
  // continuous variables for a categorical one that claims to be continuous. Target and weight
  // index follow; removing the recorded target, or any variable of target role, leaves the list
  // without one. False when i is out of range or no variable has the name.
  bool RemoveVar(int i);
  bool RemoveVar(std::string name);

  // Whether the list can be binned: at least one attribute, and no categorical variable
  // with one or no category; the indexes of those are returned. Brings the category counts
  // of its variables up to date, const as it is.
  bool IsValidList(std::vector<int>& oneCategoryVars, std::vector<int>& noCategoryVars) const;

  // The first variable that has no role, or the target (or weight) role without being the list's
  // target (or weight): a run with such a list ends the process, so ask before CreateBins(). -1
  // when there is none.
  int FindRoleConflict() const;

  // Whether both lists describe the same layout of data, so that results of one can stand
  // beside those of the other. If not, `where` is the index of the first variable that
  // differs, or the smaller of the sizes or of the target indexes that differ; otherwise
  // it stays as it was.
  bool CanMergeWith(const BINVarList& other, int& where) const;

  // Writes a readable dump, in the stream's own formatting.
  std::ostream& Display(std::ostream& os) const;

 private:
  IBINVariable* VariableAt(int i) const;
  bool IsNewName(const std::string& name) const;
  int Append(std::unique_ptr<IBINVariable> variable);
  int AppendCategorical(std::unique_ptr<IBINVariable> variable);

  std::vector<std::unique_ptr<IBINVariable>> fVariables;
  int fNumContVar;
  int fNumCatVar;
  int fTargetIndex;
  int fWeightIndex;

  // The hashes of all names that were ever added: a name whose hash is not among them is new,
  // unless the host has assigned to a variable.
  std::unordered_set<std::size_t> fNameHashes;
  bool fMayBeRenamed;
};
