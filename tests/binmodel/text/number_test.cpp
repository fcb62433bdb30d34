#include "binmodel/text/number.h"

#include <gtest/gtest.h>

#include <cmath>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <limits>
#include <random>
#include <string>

namespace {

using MCBinModel::FormatNumber;
using MCBinModel::NumberKind;
using MCBinModel::ParseNumber;

TEST(Number, TellsNumbersFromTexts) {
  for (const char* text : {"0", "-0", "+1.5", " 12 ", "\t7", "1.", ".5", "1e3", "-2.5E-3", "0001",
                           "123456789012345678901234567890", "1e-999"}) {
    EXPECT_EQ(ParseNumber(text).kind, NumberKind::kNumber) << text;
    EXPECT_EQ(ParseNumber(text).value, std::strtod(text, nullptr)) << text;
  }
  for (const char* text : {"", " ", "-", "+", ".", "-.", "1,5", "1 2", "1e", "0x10", "+-1", "--1",
                           "1.2.3", "abc", "12abc"}) {
    EXPECT_EQ(ParseNumber(text).kind, NumberKind::kText) << text;
  }
  for (const char* text : {"nan", "NaN", "-nan"}) {
    EXPECT_EQ(ParseNumber(text).kind, NumberKind::kNaN) << text;
  }
  for (const char* text : {"inf", "-Infinity", "+INF", "1e999"}) {
    EXPECT_EQ(ParseNumber(text).kind, NumberKind::kInfinite) << text;
  }
}

// Against the C library, which rounds correctly: short decimals, and random bit patterns
// through their shortest text.
TEST(Number, ReadsTheNearestDouble) {
  std::mt19937_64 random(11);
  for (int i = 0; i < 20000; ++i) {
    std::string digits = std::to_string(random() % 1'000'000'000'000'000'000ULL);
    digits.resize(1 + random() % digits.size());
    digits.insert(random() % (digits.size() + 1), ".");
    ASSERT_EQ(ParseNumber(digits).value, std::strtod(digits.c_str(), nullptr)) << digits;

    const std::uint64_t bits = random();
    double value = 0.0;
    std::memcpy(&value, &bits, sizeof value);
    if (!std::isfinite(value)) continue;
    ASSERT_EQ(ParseNumber(FormatNumber(value)).value, value) << FormatNumber(value);
  }
}

TEST(Number, FormatsTheShortestText) {
  EXPECT_EQ(FormatNumber(0.1), "0.1");
  EXPECT_EQ(FormatNumber(-0.0), "0");
  EXPECT_EQ(FormatNumber(-2e6), "-2000000");
  EXPECT_EQ(FormatNumber(1e15), "1e+15");
  EXPECT_EQ(FormatNumber(5e-324), "5e-324");
  EXPECT_EQ(MCBinModel::FormatFixed(std::numeric_limits<double>::max(), 1).size(), 311u);
  EXPECT_EQ(MCBinModel::FormatShare(1.0 / 3.0), "33.3%");
}

}  // namespace
