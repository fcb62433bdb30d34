#include "metadata/binstringinterval.h"

#include <gtest/gtest.h>

#include <sstream>

#include "support/displaytext.h"

namespace {

TEST(BINStringInterval, ContainsAndShowsItsValues) {
  struct Row {
    BINStringInterval interval;
    const char* contained;  // which of "b", "bb", "d" and "\xc3" are, as 0 or 1
    const char* text;
  };
  const Row rows[] = {{{"b", false, "d", true}, "0110", "BINStringInterval: ( b, d ]\n"},
                      {{"b", true, "d", false}, "1100", "BINStringInterval: [ b, d )\n"},
                      {{"b", true, "b", true}, "1000", "BINStringInterval: [ b, b ]\n"},
                      {{"b", true, "b", false}, "0000", "BINStringInterval: [ b, b )\n"},
                      {{"d", true, "b", true}, "0000", "BINStringInterval: [ d, b ]\n"},
                      {{"c", true, "\xff", true}, "0011", "BINStringInterval: [ c, \xff ]\n"}};
  for (const auto& [interval, expected, text] : rows) {
    SCOPED_TRACE(text);
    std::ostringstream contained;
    for (const char* const x : {"b", "bb", "d", "\xc3"}) contained << interval.Contains(x);
    EXPECT_EQ(contained.str(), expected);
    EXPECT_EQ(interval.IsEmpty(), contained.str() == "0000");
    EXPECT_EQ(DisplayText(interval), text);
  }
}

}  // namespace
