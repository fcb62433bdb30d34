#include "common/display.h"

#include <gtest/gtest.h>

#include <map>
#include <sstream>
#include <vector>

namespace {

TEST(Display, WritesVectorsMapsAndMatrices) {
  std::ostringstream os;
  os << std::boolalpha << std::hex;  // of no effect
  MCBinning::DisplayB(os, "bools", {true, false});
  MCBinning::DisplayD(os, "doubles", {});
  MCBinning::DisplayD(os, "doubles", {0.5, -2});
  MCBinning::DisplayMI(os, "map", std::map<int, int>{{3, -1}, {1, 40}});
  MCBinning::DisplayMI(os, "matrix", std::vector<std::vector<int>>{{1, 2}, {}, {3}});
  EXPECT_EQ(os.str(),
            "bools: 1 0\ndoubles:\ndoubles: 0.5 -2\nmap:\n\t1 -> 40\n\t3 -> -1\n"
            "matrix:\n\t1\t2\n\n\t3\n");
}

}  // namespace
