#include "common/display.h"

#include <gtest/gtest.h>

#include <map>
#include <sstream>
#include <string>

#include "algorithm/binefpreprocess.h"
#include "algorithm/binfactory.h"
#include "algorithm/efbinfactory.h"
#include "common/binprogressreporter.h"
#include "metadata/bincontvar.h"
#include "support/displaytext.h"

namespace {

std::string Framed(const std::string& name, const std::string& lines) {
  return "\nStart of " + name + " display\n" + lines + "End of " + name + " display\n";
}

TEST(Display, WritesVectorsMapsAndMatrices) {
  std::ostringstream os;
  MCBinning::DisplayB(os, "bools", {true, false});
  MCBinning::DisplayD(os, "doubles", {});
  MCBinning::DisplayD(os, "doubles", {0.5, -2});
  MCBinning::DisplayMI(os, "map", std::map<int, int>{{3, -1}, {1, 4}});
  MCBinning::DisplayMI(os, "matrix", std::vector<std::vector<int>>{{1, 2}, {}, {3}});
  EXPECT_EQ(os.str(),
            "bools: 1 0\ndoubles:\ndoubles: 0.5 -2\nmap:\n\t1 -> 4\n\t3 -> -1\n"
            "matrix:\n\t1\t2\n\n\t3\n");
}

TEST(Display, ShowsEachFieldUnderItsName) {
  BINProgressReporter reporter;
  reporter.SetValues(7, 1.5);
  EXPECT_EQ(DisplayText(reporter),
            Framed("BINProgressReporter", "IndexVar = 7\nelapsedTime = 1.5\n"));
  EXPECT_EQ(DisplayText(BINDataTuple{1.5, 65, 3}),
            Framed("BINDataTuple", "Value = 1.5\nTarget = 65\nWeight = 3\n"));
  EXPECT_EQ(DisplayText(EFBINDataTuple{1.5, 3}),
            Framed("EFBINDataTuple", "Value = 1.5\nWeight = 3\n"));
  EXPECT_EQ(DisplayText(BINEFPreProcess(4, false)),
            Framed("BINEFPreProcess", "Number of bins = 4\nRight border closed = 0\n"));
  EXPECT_EQ(DisplayText(BINFactory()), Framed("BINFactory", "Status code = 0\n"));
  EXPECT_EQ(DisplayText(EFBINFactory()), Framed("EFBINFactory", "Status code = 0\n"));
  EXPECT_EQ(DisplayText(BINContVar("x", "X", IBINVariable::RoleAttribute)),
            "Continuous variable: name = x, label = X, role = Attribute\n");
}

}  // namespace
