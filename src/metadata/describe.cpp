#include "metadata/describe.h"

#include <algorithm>
#include <iterator>

#include "common/statuscodes.h"
#include "metadata/binvarlist.h"

namespace MCBinning {

namespace {

struct Description {
  StatusCode code;
  const char* phrase;
  const char* advice;  // null where nothing is to be done
};

constexpr Description kDescriptions[] = {
    {StatusCode::kCancelled, "the run was cancelled",
     "if nobody cancelled it, an object of the host has thrown: see the run report"},
    {StatusCode::kOutOfMemory, "not enough memory", "bin fewer records at a time"},
    {StatusCode::kCutPointsMisfit, "the cut points do not fit the data",
     "turn NaN and infinite values into the missing value"},
    {StatusCode::kInvalidVariableList, "the variables cannot be binned together",
     "declare two categories or more, a variable of attribute role and one weight, and give every "
     "record a value for every variable"},
    {StatusCode::kNoData, "no record can be used",
     "look at the source of the records and at weights"},
    {StatusCode::kIsWeightOrTarget, "the attribute is the weight or the target",
     "leave it out of the list of attributes"},
    {StatusCode::kTargetNotCategorical, "the target is not categorical",
     "choose a categorical target, or bin this one first"},
    {StatusCode::kNoUsablePair, "no pair of attribute and target can be binned",
     "give as many targets as attributes, or none"},
    {StatusCode::kNumberOfBinsNotSet, "the number of bins is not set",
     "set two or more, for supervised binning too"},
    {StatusCode::kTargetUnusable, "the target cannot be used",
     "name a target, and declare all its categories before the algorithm is made"},
    {StatusCode::kNoSuchAttribute, "no such variable", "use an index of the variable list"},
    {StatusCode::kCategoryCodeOutOfRange, "more categories than a variable can have",
     "code the categories as 0, 1, 2 and so on, up to 255"},
    {StatusCode::kNoSuchVariable, "no such variable", "use an index of the variable list"},
    {StatusCode::kOneDistinctValue, "a single distinct value", "leave the attribute out"},
    {StatusCode::kNoValidCase, "no valid case",
     "look at the missing values, and whether the temporary directory can be written"},
    {StatusCode::kOneTargetCategory, "the target has a single category", "choose another target"},
    {StatusCode::kNoCutAccepted, "no cut point separates the classes", nullptr},
    {StatusCode::kSomeResultNotOK, "some results have a warning or an error",
     "look at the status of each result"},
    {StatusCode::kNoCutPoint, "no cut point divides the cases", "ask for more bins"},
    {StatusCode::kNoResults, "there are no results", "run first"},
    {StatusCode::kTempFileFailed,
     "a temporary file could not be written or read back (is the disk full?)",
     "use another temporary directory, or make room in it"},
};

// Null for a status that is OK, and for an unknown code.
const Description* Find(const MCStatus& status) {
  if (status.IsOK()) return nullptr;
  const auto* const found =
      std::find_if(std::begin(kDescriptions), std::end(kDescriptions),
                   [&](const Description& known) { return HasCode(status, known.code); });
  return found != std::end(kDescriptions) ? found : nullptr;
}

// The variable whose values are at a position among the temporary files: the target's come first,
// then the weight's, then the attributes'.
int VariableOfFile(const BINVarList& variables, long file) {
  if (variables.GetTargetIndex() >= 0 && file-- == 0) return variables.GetTargetIndex();
  if (variables.GetWeightIndex() >= 0 && file-- == 0) return variables.GetWeightIndex();
  for (int i = 0; i < variables.Size(); ++i) {
    if (variables.GetVariableRole(i) == IBINVariable::RoleAttribute && file-- == 0) return i;
  }
  return -1;
}

// The index of the variable that the status is about, or -1.
int VariableOf(const MCStatus& status, const BINVarList& variables) {
  switch (static_cast<StatusCode>(status.GetErrorCode())) {
    case StatusCode::kInvalidVariableList:
      return static_cast<int>(status.GetDiscreteDatum(1));
    case StatusCode::kCategoryCodeOutOfRange: {
      const int target = variables.GetTargetIndex();
      // The run's own error names the target, which is then the only categorical variable.
      if (target >= 0 && variables.GetNumCatVar() == 1) return target;
      return VariableOfFile(variables, status.GetDiscreteDatum(0));
    }
    case StatusCode::kTargetUnusable:
      return variables.GetTargetIndex();
    case StatusCode::kOneDistinctValue:
    case StatusCode::kOneTargetCategory:
    case StatusCode::kNoCutPoint:
      return static_cast<int>(status.GetDiscreteDatum(0));
    default:
      return -1;
  }
}

}  // namespace

std::string Describe(const MCStatus& status) {
  const Description* const description = Find(status);
  if (description != nullptr) return description->phrase;
  return status.IsOK() ? "ok" : "unknown status";
}

std::string Describe(const MCStatus& status, const BINVarList& variables) {
  std::string text = Describe(status);
  const Description* const description = Find(status);
  if (description == nullptr) return text;
  const IBINVariable* const variable = variables.GetVarAt(VariableOf(status, variables));
  if (variable != nullptr) text += " (variable \"" + variable->GetVariableName() + "\")";
  if (description->advice != nullptr) text += std::string(": ") + description->advice;
  return text;
}

}  // namespace MCBinning
