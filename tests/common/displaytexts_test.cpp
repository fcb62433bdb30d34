// What Display() writes: hosts keep it in their logs and search these for it.

#include <gtest/gtest.h>

#include <sstream>
#include <string>

#include "algorithm/binsettings.h"
#include "algorithm/efbinsettings.h"
#include "metadata/binvarlist.h"
#include "output/binoutput.h"
#include "output/efbinoutput.h"
#include "support/displaytext.h"

namespace {

using MCBinning::MCStatus;
using Var = IBINVariable;

std::string SettingsText() {
  BINSettings settings;
  settings.SetNSkippedAttReports(3);
  settings.SetNumDistinctValueThreshold(50);
  return DisplayText(settings);
}

std::string VarListText() {
  BINVarList list;
  list.AddContVar("age", "Age", Var::RoleAttribute);
  list.AddCatVar("sex", "Sex", 2, Var::MeasureStringCategorical, Var::RoleTarget);
  return DisplayText(list);
}

std::string OutputText() {
  BINOutput output;
  output.SetAttributeTargetResults(MCStatus(120014, true), {2.5, 0.1},
                                   {3, 1, 2, 4, 4, 0, 5, 0, 5, 8, 8}, 0, 3, 7, 12, 13.5, -1, 1e10,
                                   0.125);
  return DisplayText(output);
}

std::string Framed(const std::string& name, const std::string& lines) {
  return "\nStart of " + name + " display\n" + lines + "End of " + name + " display\n";
}

struct Shown {
  const char* name;
  std::string text;
  std::string expected;
};

TEST(DisplayTexts, StayAsTheyAre) {
  const Shown shown[] = {
      {"Settings", SettingsText(),
       Framed("BINSettings",
              "Number of progress reports to skip when create bins for attribute = 3\n"
              "Number of progress reports to skip when read data file = 100000\n"
              "if use EF as proprecess = 1\n"
              "Number of distinct value = 50\n"
              "Number of bins for EF = -1\n")},
      {"VarList", VarListText(),
       "\bINegin display of BINVarList object.\n"
       "Total variables: 2\n"
       "Number of Continuous Variables = 1\n"
       "Number of Categorical Variables  = 1\n"
       "Target Index  = 1\n"
       "Variable 0\n"
       "Continuous variable: name = age, label = Age, role = Attribute\n"
       "Variable 1\n"
       "Categorical variable: name = sex, label = Sex, role = Target\n"
       "\tMeasurement Level = String Categorical\n"
       "\tNumber of Categories = 2\n"
       "\tBINStringEncoder object:  Last code = -1\n"
       "End of display for BINVarList object.\n"},
      {"Output", OutputText(),
       "\nStart of BINOutput display\n"
       "cut point :" +
           Framed("BINAttributeTargetResults",
                  "BINDataTuple   attribute = 0\n"
                  "target = 3\n"
                  "Number of distinct values = 7\n"
                  "Total weight = 12\n"
                  "Total weight with missing = 13.5\n"
                  "Minimum = -1\n"
                  "Maximum = 1e+10\n"
                  "Model Entropy = 0.125\n"
                  "Status has error code 120014\n"
                  "Number of cutpoints = 2, the cutpoints:\n"
                  "0.1\n"
                  "2.5\n"
                  "The CellCounts are\n"
                  "3  1  2  \n"
                  "4  4  0  \n"
                  "5  0  5  \n"
                  "\n") +
           "\nEnd of BINOutput display\n"},
  };
  for (const auto& [name, text, expected] : shown) EXPECT_EQ(text, expected) << name;
}

// What a host's stream was used for before must not show in its logs, nor change there.
TEST(DisplayTexts, ShowNumbersAlikeWhateverTheStreamsFlagsAre) {
  const auto expectAlike = [](const auto& displayed) {
    std::ostringstream os;
    os << std::boolalpha << std::hex << std::showbase;
    const std::ios_base::fmtflags flags = os.flags();
    displayed.Display(os);
    EXPECT_EQ(os.str(), DisplayText(displayed));
    EXPECT_EQ(os.flags(), flags);
  };
  expectAlike(BINSettings());
  expectAlike(EFBINSettings());
  BINOutput output;
  output.SetAttributeTargetResults(MCStatus(120014, true), {}, {}, 31, 32, 33, 0, 0, 0, 0, 0);
  expectAlike(output);
  EFBINOutput efOutput;
  efOutput.SetAttributeResults(MCStatus(120014, true), {}, {}, 31, 33, 0, 0, 0, 0);
  expectAlike(efOutput);
}

}  // namespace
