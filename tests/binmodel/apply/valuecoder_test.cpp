#include "binmodel/apply/valuecoder.h"

#include <gtest/gtest.h>

#include <cfloat>
#include <cmath>
#include <cstdint>
#include <limits>
#include <string>
#include <vector>

#include "binmodel/apply/bincounter.h"
#include "binmodel/model/binlookup.h"
#include "binmodel/model/refusal.h"
#include "common/missing.h"

namespace {

using MCBinModel::CodedValue;
using MCBinModel::ColumnView;
using MCBinModel::ValueCoder;
using MCBinModel::VariableInfo;
using MCBinModel::VariableKind;

constexpr double kInfinity = std::numeric_limits<double>::infinity();
constexpr double kNaN = std::numeric_limits<double>::quiet_NaN();

VariableInfo Continuous() {
  return {"x", VariableKind::kContinuous, {{7.0}, {{90.0, DBL_MAX}}, {}}, {}, {}};
}
VariableInfo Numbers() {
  return {"n", VariableKind::kNumericCategorical, {{9.0}, {}, {}}, {3.0, -0.5, 1e20}, {}};
}
VariableInfo Texts() {
  return {"t", VariableKind::kStringCategorical, {{}, {}, {"?"}}, {}, {"no", "", "10"}};
}

// "-" when missing, "?" when unknown, else the value.
std::string Show(const CodedValue& coded) {
  if (coded.isUnknown) return coded.IsMissing() ? "?" : "unknown with a value";
  return coded.IsMissing() ? "-" : std::to_string(coded.value);
}

struct Text {
  const char* name;
  VariableInfo variable;
  const char* text;
  double number;  // that it stands for; NaN where it stands for none
  const char* coded;
};

const Text kTexts[] = {
    {"Number", Continuous(), " 1.5 ", 1.5, "1.500000"},
    {"Nan", Continuous(), "nan", kNaN, "-"},
    {"UserMissing", Continuous(), "7.0", 7.0, "-"},
    {"InInterval", Continuous(), "1e308", 1e308, "-"},
    {"OpenEndTakesInInfinity", Continuous(), "1e999", kInfinity, "-"},
    {"OtherInfinity", Continuous(), "-inf", -kInfinity, "-inf"},
    {"SystemMissing", Continuous(), "-1.7976931348623157e308", -DBL_MAX, "-"},
    {"Category", Numbers(), "-.5", -0.5, "1.000000"},
    {"NoCategory", Numbers(), "4", 4.0, "?"},
    {"TextAmongNumbers", Numbers(), "three", kNaN, "?"},
    {"NanCategory", Numbers(), "NaN", kNaN, "-"},
    {"MissingCategory", Numbers(), "9", 9.0, "-"},
    {"InfiniteCategory", Numbers(), "inf", kInfinity, "?"},
    {"TextCategory", Texts(), "no", kNaN, "0.000000"},
    {"EmptyCategory", Texts(), "", kNaN, "1.000000"},
    {"BlanksCount", Texts(), " no", kNaN, "?"},
    {"MissingText", Texts(), "?", kNaN, "-"},
    {"NumberAsText", Texts(), "10", kNaN, "2.000000"},
};

TEST(ValueCoder, CodesATextAsTheNumberItStandsFor) {
  for (const auto& [name, variable, text, number, coded] : kTexts) {
    const ValueCoder coder(variable);
    EXPECT_EQ(Show(coder.Code(std::string_view(text))), coded) << name;
    EXPECT_TRUE(std::isnan(number) || Show(coder.Code(number)) == coded) << name;
  }
}

TEST(ValueCoder, RefusesATextAmongNumbers) {
  const VariableInfo variable = Continuous();
  try {
    ValueCoder(variable).Code(std::string_view("seven"));
    ADD_FAILURE() << "not refused";
  } catch (const MCBinModel::Refusal& refusal) {
    EXPECT_EQ(refusal.GetCode(), MCBinModel::RefusalCode::kTextAmongNumbers);
    EXPECT_EQ(refusal.GetSubject(), "x");
    EXPECT_EQ(refusal.GetDetail(), "seven");
  }
}

TEST(ValueCoder, CodesColumnsAsItDoesValues) {
  const VariableInfo variable = Numbers();
  const ValueCoder coder(variable);
  const std::vector<double> numbers = {3, 4, kNaN, 1e20, -0.5, 9, 5};
  const std::uint8_t validity = 0b1101111;
  std::vector<double> codes(7);
  const ColumnView<double> view{numbers.data(), sizeof(double), &validity, 0};
  EXPECT_EQ(coder.Code(view, 7, codes.data()), 2u);
  for (std::size_t i = 0; i < 7; ++i) {
    const std::string expected = i == 4 ? "-" : Show(coder.Code(numbers[i]));
    EXPECT_EQ(std::isnan(codes[i]), expected == "-" || expected == "?") << i;
    if (!std::isnan(codes[i])) {
      EXPECT_EQ(Show({codes[i]}), expected);
    }
  }
  const std::vector<std::string_view> texts = {"", "?", "other"};
  const VariableInfo textVariable = Texts();
  EXPECT_EQ(
      ValueCoder(textVariable).Code(ColumnView<std::string_view>{texts.data()}, 3, codes.data()),
      1u);
  EXPECT_EQ(codes[0], 1.0);
  EXPECT_TRUE(std::isnan(codes[1]) && std::isnan(codes[2]));
}

// Two results of one attribute: against a target and without.
TEST(BinCounter, CountsColumnsAsItDoesRecords) {
  MCBinModel::BinModel model;
  model.attributes = {Continuous()};
  model.targets = {Texts()};
  model.results.resize(2);
  model.results[0].cutPoints = {1.0, 2.0};
  model.results[0].target = 0;
  model.results[1].cutPoints = {1.5};
  const std::vector<double> values = {1, 2, kNaN, 3, kInfinity, -kInfinity, 1, 1};
  const std::vector<double> classes = {0, 1, 1, kNaN, 2, 0, 1, 99};  // the last is no class
  const std::vector<double> weights = {1, 2, 4, 8, 16, 32, kNaN, 64};
  for (const bool rightClosed : {true, false}) {
    model.settings.rightClosed = rightClosed;
    MCBinModel::BinCounter byColumn(model, {0, 1});
    const double* const columns[] = {values.data(), classes.data()};
    byColumn.Add(columns, weights.data(), values.size());
    MCBinModel::BinCounter byRecord(model, {0, 1});
    ASSERT_EQ(byRecord.GetVariables().size(), 2u);
    for (std::size_t i = 0; i < values.size(); ++i) {
      const double record[] = {values[i], classes[i]};
      if (!std::isnan(weights[i])) byRecord.Add(record, weights[i]);
    }
    const auto counted = byColumn.Finish();
    const auto others = byRecord.Finish();
    for (std::size_t i : {0u, 1u}) {
      EXPECT_TRUE(MCBinModel::HasSameCounts(counted[i].counts, others[i].counts));
      EXPECT_EQ(counted[i].cutWeights, others[i].cutWeights);
    }
    const MCBinModel::AttributeBins& byTarget = counted[0].counts;
    EXPECT_EQ(byTarget.weightWithMissing, 127.0);
    EXPECT_EQ(byTarget.validWeight, 51.0);
    EXPECT_EQ(byTarget.binWeights,
              rightClosed ? (std::vector<double>{33, 2, 16}) : (std::vector<double>{32, 1, 18}));
    EXPECT_EQ(byTarget.classWeights[0], (std::vector<double>{rightClosed ? 33.0 : 32.0, 0, 0}));
    EXPECT_EQ(counted[0].cutWeights, (std::vector<double>{1, 2}));
    EXPECT_EQ(counted[1].counts.validWeight, 123.0);
    EXPECT_EQ(counted[1].counts.binWeights, (std::vector<double>{97, 26}));
  }
}

// For every number of cut points up to two powers of two, at the cut points and on both sides.
TEST(FindBins, AgreesWithFindBin) {
  for (int cutCount = 0; cutCount <= 17; ++cutCount) {
    std::vector<double> cutPoints;
    std::vector<double> values = {-kInfinity, kInfinity, 0.5, std::nan("")};
    for (int i = 1; i <= cutCount; ++i) {
      cutPoints.push_back(i);
      for (const double side : {-kInfinity, kInfinity}) values.push_back(std::nextafter(i, side));
      values.insert(values.begin(), 3, i);
    }
    for (const bool rightClosed : {true, false}) {
      std::vector<std::int32_t> bins(values.size());
      MCBinModel::FindBins(cutPoints, values.data(), values.size(), rightClosed, bins.data());
      for (std::size_t i = 0; i < values.size(); ++i) {
        const std::int32_t bin =
            std::isnan(values[i])
                ? -1
                : static_cast<std::int32_t>(MCBinModel::FindBin(cutPoints, values[i], rightClosed));
        EXPECT_EQ(bins[i], bin) << values[i] << " among " << cutCount;
      }
    }
  }
}

}  // namespace
