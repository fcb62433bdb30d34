#include "binmodel/text/isotime.h"

#include <gtest/gtest.h>

#include <cmath>
#include <string>

namespace {

using MCBinModel::FormatMicroseconds;
using MCBinModel::FormatTime;
using MCBinModel::ParseTime;

// Seconds by `date -u -d ... +%s`; `shown` where it is another text than the one that is read.
TEST(IsoTime, ReadsAndShowsTimes) {
  const struct {
    const char* text;
    double seconds;
    const char* shown = nullptr;
  } kTimes[] = {
      {"1970-01-01", 0.0},
      {"2024-02-29", 1709164800.0},
      {"1969-12-31", -86400.0},
      {"0000-03-01", -62162035200.0},
      {"9999-12-31T23:59:59", 253402300799.0},
      {"2024-01-31T12:30", 1706704200.0, "2024-01-31T12:30:00"},
      {" 2024-01-31 12:30:00\t", 1706704200.0, "2024-01-31T12:30:00"},
      {"2024-01-31T00:00:00Z", 1706659200.0, "2024-01-31"},
      {"2024-01-31T12:30:00+01:00", 1706700600.0, "2024-01-31T11:30:00"},
      {"2024-01-31T23:30:00-0100", 1706747400.0, "2024-02-01T00:30:00"},
      {"2024-01-31T12:30:00.5+02", 1706697000.5, "2024-01-31T10:30:00.5"},
      {"2024-01-31T12:30:00.123456", 1706704200.123456},
      {"2024-01-31T12:30:00,2500", 1706704200.25, "2024-01-31T12:30:00.25"},
      {"1969-12-31T23:59:58.75", -1.25},
      {"1969-12-31T23:59:58.00001", -1.99999},
      {"1969-12-31T23:59:59.900", -0.1, "1969-12-31T23:59:59.9"},
  };
  for (const auto& [text, seconds, shown] : kTimes) {
    EXPECT_EQ(ParseTime(text), seconds) << text;
    EXPECT_EQ(FormatTime(seconds), shown == nullptr ? text : shown);
  }
  EXPECT_EQ(FormatTime(1e300), "1e+300");
  EXPECT_EQ(FormatTime(1e-300), "1e-300");
}

TEST(IsoTime, LeavesOtherTextsAlone) {
  for (const char* text : {"",
                           "2024",
                           "2024-01",
                           "20240131",
                           "2024-1-31",
                           "2023-02-29",
                           "2024-04-31",
                           "2024-13-01",
                           "2024-00-10",
                           "2024-01-00",
                           "2024-01-31T",
                           "2024-01-31T12",
                           "2024-01-31T24:00",
                           "2024-01-31T12:60",
                           "2024-01-31T12:30:60",
                           "2024-01-31T12:30:00.",
                           "2024-01-31  12:30",
                           "2024-01-31T12:30:00+",
                           "2024-01-31T12:30:00+1",
                           "2024-01-31T12:30:00+24:00",
                           "2024-01-31T12:30:00+01:",
                           "2024-01-31T12:30:00Z1",
                           "2024-01-31Z",
                           "2024-01-31x",
                           "02024-01-31",
                           "-2024-01-31",
                           "31.01.2024",
                           "2024/01/31"}) {
    EXPECT_FALSE(ParseTime(text)) << text;
  }
}

// A database that compares microseconds decides as the doubles do.
TEST(IsoTime, NamesTheMicrosecondsBesideANumber) {
  const double exact = *ParseTime("2024-01-31T12:30:00.123456");
  EXPECT_EQ(FormatMicroseconds(exact, false), "2024-01-31 12:30:00.123456");
  EXPECT_EQ(FormatMicroseconds(exact, true), "2024-01-31 12:30:00.123456");
  const double later = std::nextafter(exact, 1e300);
  EXPECT_EQ(FormatMicroseconds(later, false), "2024-01-31 12:30:00.123456");
  EXPECT_EQ(FormatMicroseconds(later, true), "2024-01-31 12:30:00.123457");
  EXPECT_EQ(FormatMicroseconds(-0.25, false), "1969-12-31 23:59:59.750000");
  EXPECT_EQ(FormatMicroseconds(std::nextafter(-1e-6, -1.0), true), "1969-12-31 23:59:59.999999");
  const double far = *ParseTime("9999-12-31T23:00:00");
  EXPECT_LT(FormatMicroseconds(far, true), FormatMicroseconds(far, false)) << "one double";
  EXPECT_EQ(FormatMicroseconds(1e300, true), std::nullopt);
}

}  // namespace
