// What Display() writes: hosts keep it in their logs and search these for it.

#include <gtest/gtest.h>

#include <ostream>
#include <sstream>
#include <string>

#include "algorithm/binefpreprocess.h"
#include "algorithm/binfactory.h"
#include "algorithm/binsettings.h"
#include "algorithm/efbinfactory.h"
#include "algorithm/efbinsettings.h"
#include "common/binprogressreporter.h"
#include "metadata/bincatnumencoder.h"
#include "metadata/bindatatuple.h"
#include "metadata/binnumericusermissing.h"
#include "metadata/binstringencoder.h"
#include "metadata/binvarlist.h"
#include "metadata/efbindatatuple.h"
#include "output/binoutput.h"
#include "output/efbinoutput.h"
#include "support/displaytext.h"
#include "support/hostusermissing.h"
#include "support/rowname.h"

namespace {

using MCBinning::MCStatus;
using Var = IBINVariable;

std::string SettingsText() {
  BINSettings settings;
  settings.SetNSkippedAttReports(3);
  settings.SetNumDistinctValueThreshold(50);
  return DisplayText(settings);
}

std::string EFSettingsText() {
  EFBINSettings settings;
  settings.SetNumberOfBins(10);
  settings.SetRightBorderClosed(false);
  return DisplayText(settings);
}

std::string ReporterText() {
  BINProgressReporter reporter;
  reporter.SetValues(7, 1.5);
  return DisplayText(reporter);
}

template <typename Enumeration>
std::string WordsFor(int first, int last) {
  std::ostringstream os;
  for (int value = first; value <= last; ++value) {
    MCBinning::Display(os, static_cast<Enumeration>(value));
  }
  return os.str();
}

std::string NumEncoderText() {
  BINCatNumEncoder encoder({8, 7, 6, 5, 4, 3, 2, 1});
  encoder.SetValueLabels({"eight", "seven"});
  encoder.SetUserMissingInfo(new HostUserMissing(IBINUserMissing::UserMissingNumeric));
  return DisplayText(encoder);
}

std::string VarListText() {
  BINVarList list;
  list.AddContVar("age", "Age", Var::RoleAttribute);
  list.AddCatVar("sex", "Sex", 2, Var::MeasureStringCategorical, Var::RoleTarget);
  return DisplayText(list);
}

std::string UserMissingText() {
  BINNumericUserMissing userMissing;
  userMissing.AddValue(9, "refused");
  userMissing.AddValue(9, "again");
  userMissing.SetInterval({97.0, 99.0});
  return DisplayText(userMissing);
}

std::string OutputText() {
  BINOutput output;
  output.SetAttributeTargetResults(MCStatus(120014, true), {2.5, 0.1},
                                   {3, 1, 2, 4, 4, 0, 5, 0, 5, 8, 8}, 0, 3, 7, 12, 13.5, -1, 1e10,
                                   0.125);
  return DisplayText(output);
}

std::string EFOutputText() {
  EFBINOutput output;
  output.SetAttributeResults({}, {}, {12.5}, 4, 9, 12.5, 13, -3, 8);
  return DisplayText(output);
}

std::string Framed(const std::string& name, const std::string& lines) {
  return "\nStart of " + name + " display\n" + lines + "End of " + name + " display\n";
}

struct Shown {
  const char* name;
  std::string (*make)();
  std::string expected;
};
void PrintTo(const Shown& row, std::ostream* os) { *os << row.name; }

class ObjectTexts : public testing::TestWithParam<Shown> {};

TEST_P(ObjectTexts, StayAsTheyAre) { EXPECT_EQ(GetParam().make(), GetParam().expected); }

const Shown kShown[] = {
    {"Settings", SettingsText,
     Framed("BINSettings",
            "Number of progress reports to skip when create bins for attribute = 3\n"
            "Number of progress reports to skip when read data file = 100000\n"
            "if use EF as proprecess = 1\n"
            "Number of distinct value = 50\n"
            "Number of bins for EF = -1\n")},
    {"EFSettings", EFSettingsText,
     Framed("EFBINSettings",
            "Number of progress reports to skip when create bins for attribute = 0\n"
            "Number of progress reports to skip when read data file = 100000\n"
            "0\n"
            "Number of bins for EF = 10\n")},
    {"Reporter", ReporterText, Framed("BINProgressReporter", "IndexVar = 7\nelapsedTime = 1.5\n")},
    {"Tuple",
     [] {
       return DisplayText(BINDataTuple{1.5, 65, 3});
     },
     Framed("BINDataTuple", "Value = 1.5\nTarget = 65\nWeight = 3\n")},
    {"EFTuple",
     [] {
       return DisplayText(EFBINDataTuple{1.5, 3});
     },
     Framed("EFBINDataTuple", "Value = 1.5\nWeight = 3\n")},
    {"PreProcess", [] { return DisplayText(BINEFPreProcess(4, false)); },
     Framed("BINEFPreProcess", "Number of bins = 4\nRight border closed = 0\n")},
    {"Factory", [] { return DisplayText(BINFactory()); },
     Framed("BINFactory", "Status code = 0\n")},
    {"EFFactory", [] { return DisplayText(EFBINFactory()); },
     Framed("EFBINFactory", "Status code = 0\n")},
    {"MeasureLevels", [] { return WordsFor<Var::MeasureLevel>(-1, 5); },
     "Measure level -1\nUnknown measure level\nContinuous\nNumeric Categorical\n"
     "String Categorical\nFrequency weight\nMeasure level 5\n"},
    {"Roles", [] { return WordsFor<Var::VariableRole>(-1, 4); },
     "Variable role -1\nUndefined variable role\nAttribute\nTarget\nFrequency weight\n"
     "Variable role 4\n"},
    {"Roundings", [] { return WordsFor<Var::BINWRoundingOption>(-1, 2); },
     "\nTruncate to smaller int\nRound to closest int\n\n"},
    {"NumEncoder", NumEncoderText,
     "\tBINCatNumEncoder: Last code = 7\n"
     "\t\tNumeric values of categories: 8 7 6 5 4 3 2 \n1 \n"
     "\t\tValue Labels:\neight seven \n"
     "\t\tUser-missing values for this encoder:\n\t\thost\n\n"},
    {"StringEncoder",
     [] {
       return DisplayText(BINStringEncoder({"pear", "apple"}));
     },
     "\tBINStringEncoder object:  Last code = 1\n\t\t0\t\tpear\n\t\t1\t\tapple\n"},
    {"UserMissing", UserMissingText,
     Framed("BINNumericUserMissing",
            "Discrete missing values:\n"
            "\t0\t9, label = refused\n"
            "\t1\t9, label = again\n"
            "Missing interval:\nBINNumericInterval: [ 97, 99 ]\n")},
    {"VarList", VarListText,
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
    {"Output", OutputText,
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
    {"EFOutput", EFOutputText,
     "\nStart of EFBINOutput display\n"
     "cut point :" +
         Framed("BINAttributeResults",
                "BINDataTuple   attribute = 4\n"
                "Number of distinct values = 9\n"
                "Total weight = 12.5\n"
                "Total weight with missing = 13\n"
                "Minimum = -3\n"
                "Maximum = 8\n"
                "Number of cutpoints = 0\n"
                "The CellCounts are\n"
                "12.5  \n"
                "\n") +
         "\nEnd of EFBINOutput display\n"},
};

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

INSTANTIATE_TEST_SUITE_P(Objects, ObjectTexts, testing::ValuesIn(kShown), RowName);

}  // namespace
