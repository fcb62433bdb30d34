// What docs/guide.md quotes under "Describe the data": a list, categories, missing values.

#include <mcbinning/mcbinning.h>

#include <string>
#include <vector>

int main() {
  // begin list
  BINVarList variables;
  const int income = variables.AddContVar("income", "Yearly income", IBINVariable::RoleAttribute);
  const int age = variables.AddContVar("age", "", IBINVariable::RoleAttribute);
  const int risk = variables.AddCatVar(
      "risk", "Risk class", std::vector<std::string>{"low", "high"}, IBINVariable::RoleTarget);
  const int households = variables.AddWeightVar("households", "", IBINVariable::RoundClosest);
  // end list

  // begin missing
  variables.AddDiscreteUserMissing(income, -1.0, "refused");
  variables.AddDiscreteUserMissing(income, -2.0, "not asked");
  variables.SetMissingInterval(age, 120.0, 999.0);  // both ends included
  variables.AddDiscreteUserMissing(risk, "unknown", "");
  variables.AddDiscreteUserMissing(households, 99.0, "not counted");
  // end missing

  // begin encode
  auto& classes = dynamic_cast<BINStringEncoder&>(*variables.GetEncoderAt(risk));
  const double high = classes.Encode("high");        // 1: the second category above
  const double unknown = classes.Encode("unknown");  // -1: declared missing
  const double typo = classes.EncodeConst("hihg");   // -1: not a category
  const std::string name = classes.Decode(1);        // "high"
  // end encode

  // begin record
  MCCommon::InMemoryRecordIterator records;
  records.Add({31000.0, 44.0, high, 3.0});
  records.Add({MCMV::Missing(), 51.0, classes.Encode("low"), 1.0});
  // end record

  // begin valid
  std::vector<int> oneCategory;
  std::vector<int> noCategory;
  const bool canBeBinned = variables.IsValidList(oneCategory, noCategory) &&
                           variables.FindRoleConflict() < 0;  // else the index of that variable
  // end valid

  const bool asSaid = high == 1.0 && unknown == -1.0 && typo == -1.0 && name == "high";
  return canBeBinned && asSaid ? 0 : 1;
}
