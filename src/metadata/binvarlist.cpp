#include "metadata/binvarlist.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <limits>
#include <utility>

#include "metadata/bincatnumencoder.h"
#include "metadata/bincatvar.h"
#include "metadata/bincontvar.h"
#include "metadata/binnumericusermissing.h"
#include "metadata/binstringencoder.h"
#include "metadata/binstringusermissing.h"
#include "metadata/binweightvar.h"

namespace {

constexpr int kNone = -1;

// A variable with `values` as its categories. `Encoder` is what `level` gives it.
template <typename Encoder, typename Value>
std::unique_ptr<IBINVariable> MakeCatVar(const std::string& name, const std::string& label,
                                         const std::vector<Value>& values,
                                         const std::vector<std::string>& labels,
                                         IBINVariable::MeasureLevel level,
                                         IBINVariable::VariableRole role) {
  auto variable =
      std::make_unique<BINCatVar>(name, label, static_cast<int>(values.size()), level, role);
  auto& encoder = dynamic_cast<Encoder&>(*variable->GetEncoder());
  for (const Value& value : values) encoder.Encode(value);
  encoder.SetValueLabels(labels);
  return variable;
}

// Lets `edit` change the user-missing definition of the variable, or a new one if it has none. A
// definition of another class stays as it is, and a new one that the variable does not take goes.
template <typename UserMissing, typename Edit>
void EditUserMissing(IBINVariable& variable, const Edit& edit) {
  if (IBINUserMissing* const held = variable.GetUserMissingInfo()) {
    if (auto* const fitting = dynamic_cast<UserMissing*>(held)) edit(*fitting);
    return;
  }
  auto created = std::make_unique<UserMissing>();
  edit(*created);
  if (variable.SetUserMissingInfo(created.get())) static_cast<void>(created.release());
}

bool HasStrings(const IBINVariable& variable) {
  return variable.GetMeasureLevel() == IBINVariable::MeasureStringCategorical;
}

// Where an index is after the variable at `removed` is gone.
int IndexAfterRemoval(int index, int removed) {
  if (removed == index) return kNone;
  return removed < index ? index - 1 : index;
}

bool HaveEqualUserMissing(const IBINVariable& a, const IBINVariable& b) {
  const IBINUserMissing* const ofA = a.GetUserMissingInfo();
  const IBINUserMissing* const ofB = b.GetUserMissingInfo();
  return ofA != nullptr ? ofA->IsEqualTo(ofB) : ofB == nullptr;
}

bool CountIsThatOfEncoder(const IBINVariable& variable) {
  return variable.GetNumberOfCategories() == variable.GetEncoder()->GetNumberOfCategories();
}

// Whether two variables describe the same column. The category counts of the two are not
// compared, but neither may differ from its own encoder's.
bool DescribeSameColumn(const IBINVariable& a, const IBINVariable& b) {
  const IBINVariable::VariableRole role = a.GetVariableRole();
  if (a.GetVariableName() != b.GetVariableName() || a.GetVariableLabel() != b.GetVariableLabel() ||
      role != b.GetVariableRole() || a.GetMeasureLevel() != b.GetMeasureLevel()) {
    return false;
  }
  if (role != IBINVariable::RoleAttribute && role != IBINVariable::RoleTarget) return true;
  return HaveEqualUserMissing(a, b) && (a.GetMeasureLevel() == IBINVariable::MeasureContinuous ||
                                        (CountIsThatOfEncoder(a) && CountIsThatOfEncoder(b)));
}

}  // namespace

BINVarList::BINVarList()
    : fNumContVar(0),
      fNumCatVar(0),
      fTargetIndex(kNone),
      fWeightIndex(kNone),
      fMayBeRenamed(false) {}

BINVarList::BINVarList(const BINVarList& other)
    : fNumContVar(other.fNumContVar),
      fNumCatVar(other.fNumCatVar),
      fTargetIndex(other.fTargetIndex),
      fWeightIndex(other.fWeightIndex),
      fMayBeRenamed(false) {
  fVariables.reserve(other.fVariables.size());
  for (const auto& variable : other.fVariables) {
    Append(std::unique_ptr<IBINVariable>(variable->Clone()));
  }
}

BINVarList& BINVarList::operator=(const BINVarList& other) {
  if (this == &other) return *this;
  BINVarList copy(other);
  fVariables.swap(copy.fVariables);
  fNumContVar = copy.fNumContVar;
  fNumCatVar = copy.fNumCatVar;
  fTargetIndex = copy.fTargetIndex;
  fWeightIndex = copy.fWeightIndex;
  fNameHashes.swap(copy.fNameHashes);
  fMayBeRenamed = false;
  return *this;
}

BINVarList::~BINVarList() = default;

int BINVarList::AddContVar(const std::string& name, const std::string& label,
                           IBINVariable::VariableRole role) {
  if (!IsNewName(name) || role == IBINVariable::RoleTarget) return kNone;
  const int index = Append(std::make_unique<BINContVar>(name, label, role));
  ++fNumContVar;
  return index;
}

int BINVarList::AddCatVar(const std::string& name, const std::string& label, int numberOfCategories,
                          IBINVariable::MeasureLevel level, IBINVariable::VariableRole role) {
  if (!IsNewName(name)) return kNone;
  return AppendCategorical(
      std::make_unique<BINCatVar>(name, label, numberOfCategories, level, role));
}

int BINVarList::AddCatVar(const std::string& name, const std::string& label,
                          const std::vector<double>& values, IBINVariable::VariableRole role) {
  return AddCatVar(name, label, values, std::vector<std::string>(), role);
}

int BINVarList::AddCatVar(const std::string& name, const std::string& label,
                          const std::vector<std::string>& values, IBINVariable::VariableRole role) {
  return AddCatVar(name, label, values, std::vector<std::string>(), role);
}

int BINVarList::AddCatVar(const std::string& name, const std::string& label,
                          const std::vector<double>& values, const std::vector<std::string>& labels,
                          IBINVariable::VariableRole role) {
  if (values.size() < 2 || !IsNewName(name)) return kNone;
  return AppendCategorical(MakeCatVar<BINCatNumEncoder>(
      name, label, values, labels, IBINVariable::MeasureNumericCategorical, role));
}

int BINVarList::AddCatVar(const std::string& name, const std::string& label,
                          const std::vector<std::string>& values,
                          const std::vector<std::string>& labels, IBINVariable::VariableRole role) {
  if (values.size() < 2 || !IsNewName(name)) return kNone;
  return AppendCategorical(MakeCatVar<BINStringEncoder>(
      name, label, values, labels, IBINVariable::MeasureStringCategorical, role));
}

int BINVarList::AddWeightVar(const std::string& name, const std::string& label,
                             IBINVariable::BINWRoundingOption option) {
  if (fWeightIndex != kNone) return kNone;
  fWeightIndex = Append(std::make_unique<BINWeightVar>(name, label, option));
  return fWeightIndex;
}

int BINVarList::Size() const { return static_cast<int>(fVariables.size()); }

int BINVarList::FindVariable(const std::string& name) const {
  const auto found = std::find_if(fVariables.begin(), fVariables.end(), [&](const auto& variable) {
    return variable->GetVariableName() == name;
  });
  return found != fVariables.end() ? static_cast<int>(found - fVariables.begin()) : kNone;
}

const IBINVariable* BINVarList::GetVarAt(int i) const { return VariableAt(i); }

IBINVariable* BINVarList::GetVarAt(int i) {
  fMayBeRenamed = true;
  return VariableAt(i);
}

IBINVariable* BINVarList::VariableAt(int i) const {
  return i >= 0 && i < Size() ? fVariables[static_cast<std::size_t>(i)].get() : nullptr;
}

const IBINEncoder* BINVarList::GetEncoderAt(int i) const {
  const IBINVariable* const variable = GetVarAt(i);
  return variable != nullptr ? variable->GetEncoder() : nullptr;
}

IBINEncoder* BINVarList::GetEncoderAt(int i) {
  IBINVariable* const variable = VariableAt(i);
  return variable != nullptr ? variable->GetEncoder() : nullptr;
}

IBINVariable::VariableRole BINVarList::GetVariableRole(int i) const {
  const IBINVariable* const variable = GetVarAt(i);
  return variable != nullptr ? variable->GetVariableRole() : IBINVariable::RoleUndefined;
}

int BINVarList::GetNumAttributeVars() const {
  return static_cast<int>(
      std::count_if(fVariables.begin(), fVariables.end(), [](const auto& variable) {
        return variable->GetVariableRole() == IBINVariable::RoleAttribute;
      }));
}

int BINVarList::GetNTargetCats() const {
  for (const auto& variable : fVariables) {
    if (variable->GetVariableRole() == IBINVariable::RoleTarget) {
      return variable->GetNumberOfCategories();
    }
  }
  return 0;
}

void BINVarList::GetVarNames(std::vector<std::string>& attributeNames,
                             std::string& targetName) const {
  attributeNames.clear();
  for (const auto& variable : fVariables) {
    const IBINVariable::VariableRole role = variable->GetVariableRole();
    if (role == IBINVariable::RoleAttribute) attributeNames.push_back(variable->GetVariableName());
    if (role == IBINVariable::RoleTarget) targetName = variable->GetVariableName();
  }
}

bool BINVarList::SetVariableRole(int i, IBINVariable::VariableRole role) {
  IBINVariable* const variable = VariableAt(i);
  if (variable == nullptr) return false;
  if (role == IBINVariable::RoleTarget) {
    if (fTargetIndex < 0) fTargetIndex = i;
  } else if (variable->GetVariableRole() == IBINVariable::RoleTarget) {
    fTargetIndex = kNone;
  }
  variable->SetVariableRole(role);
  return true;
}

bool BINVarList::AddDiscreteUserMissing(int i, double value, const std::string& label) {
  IBINVariable* const variable = VariableAt(i);
  if (variable == nullptr || HasStrings(*variable)) return false;
  EditUserMissing<BINNumericUserMissing>(
      *variable, [&](auto& userMissing) { userMissing.AddValue(value, label); });
  return true;
}

bool BINVarList::AddDiscreteUserMissing(int i, const std::string& value, const std::string& label) {
  IBINVariable* const variable = VariableAt(i);
  if (variable == nullptr || !HasStrings(*variable)) return false;
  EditUserMissing<BINStringUserMissing>(
      *variable, [&](auto& userMissing) { userMissing.AddValue(value, label); });
  return true;
}

bool BINVarList::SetMissingInterval(int i, double low, double high) {
  IBINVariable* const variable = VariableAt(i);
  if (variable == nullptr || HasStrings(*variable)) return false;
  const IBINUserMissing* const held = variable->GetUserMissingInfo();
  if (held != nullptr && held->HasInterval()) return false;
  EditUserMissing<BINNumericUserMissing>(*variable, [&](auto& userMissing) {
    userMissing.SetInterval(BINNumericInterval(low, high));
  });
  return true;
}

int BINVarList::UpdateNumbersOfCategories() {
  std::int64_t sum = 0;
  for (const auto& variable : fVariables) sum += variable->UpdateNumberOfCategories();
  return static_cast<int>(std::min<std::int64_t>(sum, std::numeric_limits<int>::max()));
}

bool BINVarList::RemoveVar(int i) {
  const IBINVariable* const variable = VariableAt(i);
  if (variable == nullptr) return false;
  const bool isTarget = variable->GetVariableRole() == IBINVariable::RoleTarget;
  if (i != fWeightIndex) {
    const bool isContinuous = variable->GetMeasureLevel() == IBINVariable::MeasureContinuous;
    --(isContinuous ? fNumContVar : fNumCatVar);
  }
  fVariables.erase(fVariables.begin() + i);
  fTargetIndex = isTarget ? kNone : IndexAfterRemoval(fTargetIndex, i);
  fWeightIndex = IndexAfterRemoval(fWeightIndex, i);
  return true;
}

// By value, as published.
bool BINVarList::RemoveVar(std::string name) {  // NOLINT(performance-unnecessary-value-param)
  return RemoveVar(FindVariable(name));
}

bool BINVarList::IsValidList(std::vector<int>& oneCategoryVars,
                             std::vector<int>& noCategoryVars) const {
  oneCategoryVars.clear();
  noCategoryVars.clear();
  bool hasFewCategories = false;
  for (int i = 0; i < Size(); ++i) {
    const int status = fVariables[static_cast<std::size_t>(i)]->GetVarStatus();
    if (status == IBINVariable::VarStatusOneCategory) oneCategoryVars.push_back(i);
    if (status == IBINVariable::VarStatusNoCategory) noCategoryVars.push_back(i);
    if (status != IBINVariable::VarStatusOk) hasFewCategories = true;
  }
  return !hasFewCategories && GetNumAttributeVars() > 0;
}

int BINVarList::FindRoleConflict() const {
  for (int i = 0; i < Size(); ++i) {
    const IBINVariable::VariableRole role = GetVariableRole(i);
    const bool isSecond = (role == IBINVariable::RoleTarget && i != fTargetIndex) ||
                          (role == IBINVariable::RoleFrequencyWeight && i != fWeightIndex);
    if (isSecond || role == IBINVariable::RoleUndefined) return i;
  }
  return kNone;
}

bool BINVarList::CanMergeWith(const BINVarList& other, int& where) const {
  if (Size() != other.Size()) {
    where = std::min(Size(), other.Size());
    return false;
  }
  if (fTargetIndex != other.fTargetIndex) {
    where = std::min(fTargetIndex, other.fTargetIndex);
    return false;
  }
  for (int i = 0; i < Size(); ++i) {
    if (!DescribeSameColumn(*GetVarAt(i), *other.GetVarAt(i))) {
      where = i;
      return false;
    }
  }
  return true;
}

std::ostream& BINVarList::Display(std::ostream& os) const {
  os << "\bINegin display of BINVarList object.\n"
     << "Total variables: " << Size() << '\n'
     << "Number of Continuous Variables = " << fNumContVar << '\n'
     << "Number of Categorical Variables  = " << fNumCatVar << '\n';
  if (fTargetIndex >= 0) os << "Target Index  = " << fTargetIndex << '\n';
  for (int i = 0; i < Size(); ++i) {
    os << "Variable " << i << '\n';
    GetVarAt(i)->Display(os);
  }
  return os << "End of display for BINVarList object.\n";
}

bool BINVarList::IsNewName(const std::string& name) const {
  if (name.empty()) return false;
  if (!fMayBeRenamed && !fNameHashes.contains(std::hash<std::string>()(name))) return true;
  return FindVariable(name) == kNone;
}

int BINVarList::Append(std::unique_ptr<IBINVariable> variable) {
  fNameHashes.insert(std::hash<std::string>()(variable->GetVariableName()));
  fVariables.push_back(std::move(variable));
  return Size() - 1;
}

int BINVarList::AppendCategorical(std::unique_ptr<IBINVariable> variable) {
  const bool isTarget = variable->GetVariableRole() == IBINVariable::RoleTarget;
  const int index = Append(std::move(variable));
  ++fNumCatVar;
  if (isTarget) fTargetIndex = index;
  return index;
}
