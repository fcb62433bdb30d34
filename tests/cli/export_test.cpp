#include <gtest/gtest.h>

#include "cli/handmadebins.h"
#include "cli/program.h"

namespace {

TEST(Export, WritesAFileInsteadOfStandardOutput) {
  const Program program;
  EXPECT_EQ(program.Run("export --format python -o b.py -", kHandMadeBins).out, "");
  EXPECT_EQ(program.Read("b.py"), program.Run("export --format python -", kHandMadeBins).out);
}

}  // namespace
