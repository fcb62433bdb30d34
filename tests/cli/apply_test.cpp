#include <gtest/gtest.h>

#include <ostream>
#include <string>

#include "cli/handmadebins.h"
#include "cli/program.h"
#include "support/rowname.h"

namespace {

struct ApplyExample {
  const char* name;
  std::string options;
  std::string input;
  std::string output;
};
void PrintTo(const ApplyExample& row, std::ostream* os) { *os << row.name; }

class ApplyTest : public testing::TestWithParam<ApplyExample> {};

TEST_P(ApplyTest, WritesBins) {
  const Program program;
  program.Write("bins.json", kHandMadeBins);
  const auto outcome = program.Run("apply bins.json " + GetParam().options, GetParam().input);
  EXPECT_EQ(outcome.exitCode, 0) << outcome.err;
  EXPECT_EQ(outcome.out, GetParam().output);
}

INSTANTIATE_TEST_SUITE_P(
    Examples, ApplyTest,
    testing::Values(
        ApplyExample{"BordersAndEnds", "",
                     "c,a\nx,1\nx,1.0000000000000002\nx,2.5\nx,-1e999\nx,inf\n",
                     "c,a,a_bin,c_bin\nx,1,0,0\nx,1.0000000000000002,1,0\nx,2.5,1,0\n"
                     "x,-1e999,0,0\nx,inf,,0\n"},
        ApplyExample{
            "Missing", "--missing-as ?",
            "a,c\n,x\nNA,x\n\"NA\",x\nnan,x\n9.0,x\n90,x\n1e308,q\n1,other\n1,\n",
            "a,c,a_bin,c_bin\n,x,?,0\nNA,x,?,0\n\"NA\",x,?,0\nnan,x,?,0\n9.0,x,?,0\n90,x,?,0\n"
            "1e308,q,?,?\n1,other,0,?\n1,,0,?\n"},
        ApplyExample{"Labels", "--as label --suffix _band", "a,c\n2,\"y, z\"\n7,x\n",
                     "a,c,a_band,c_band\n2,\"y, z\",\"(1, 2.5]\",\"{\"\"y, z\"\"}\"\n"
                     "7,x,\"(2.5, +inf)\",{x}\n"},
        // Events ("yes") 3, 0, 1 of 4, others 1, 2, 1 of 4.
        ApplyExample{"WeightOfEvidence", "--as woe --replace", "c,a,t\nx,0,\nx,2,\nx,3,\n",
                     "c,a,t\n0,1.0986122886681098,\n0,-inf,\n0,0,\n"},
        ApplyExample{
            "KeepsTheOtherColumns", "--target t",
            "\xEF\xBB\xBF\"no\"\"te\",a,c,\"\",\r\n\"x\ny\",3,x,\"\",ab\"c\r\n, 0 ,\"x\",,\r\n",
            "\"no\"\"te\",a,c,\"\",,a_bin,c_bin\n\"x\ny\",3,x,\"\",\"ab\"\"c\",2,0\n"
            ", 0 ,\"x\",,,0,0\n"},
        ApplyExample{"OtherDelimiterAndTexts", "--delimiter ; --na - --as label",
                     "a;c\n-;\"x\"\n0;x\n", "a;c;a_bin;c_bin\n-;\"x\";;{x}\n0;x;(-inf, 1];{x}\n"},
        ApplyExample{"HeaderOnly", "", "a,c\n", "a,c,a_bin,c_bin\n"}),
    RowName);

TEST(Apply, TellsOfUnknownCategories) {
  const Program program;
  program.Write("bins.json", kHandMadeBins);
  const auto outcome = program.Run("apply bins.json", "a,c\n1,x\n1,new\n1,q\n1,new\n");
  EXPECT_EQ(outcome.err,
            "mcbin: column 'c': values that the bin file does not know count as missing: 2, the "
            "first is 'new' in line 3\n");
}

// A bin file made by hand, so that every number can be followed.
TEST(Evaluate, PrintsBothSides) {
  const Program program;
  program.Write("bins.json", kHandMadeBins);
  program.Write("new.csv",
                "a,c,t,w\n0,x,yes,2\n2,x,no,1\n3,x,yes,1\n9,x,no,5\n3,x,maybe,5\n5,x,no,0\n");
  const auto outcome = program.Run("evaluate --weight w bins.json new.csv");
  EXPECT_EQ(outcome.exitCode, 0);
  for (const char* part :
       {"records, target t; evidence is above 0 where yes is more frequent than overall\n",
        "  a             3     0.0000     -  0.8113  differ\n",
        "  c             2       +inf     -  0.0000  differ\n",
        "  data: weight 4 valid, 10 missing; from 0 to 3; entropy 0.0000, gain 0.8113 bits; "
        "information value +inf\n",
        "  (-inf, 1]         4     2  50.0%  50.0%    3     2   1     0    1.0986  +inf\n",
        "  {\"y, z\"}         4     0  50.0%    0.0%    2     0   2     0    0.0000       -\n"}) {
    EXPECT_NE(outcome.out.find(part), std::string::npos) << part << outcome.out;
  }
  EXPECT_NE(outcome.err.find("1 of 6 records dropped for their weight"), std::string::npos);
}

}  // namespace
