// Bins and data of all kinds, with texts that mean something to CSV, SQL, Python, HTML or a
// terminal, as they are and damaged: what a fuzz target tries for long, in a second.

#include "fuzz/anybins.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <limits>
#include <numeric>
#include <string>
#include <vector>

#include "binmodel/file/binfile.h"
#include "binmodel/model/binmodel.h"
#include "binmodel/text/escape.h"
#include "binmodel/text/number.h"
#include "fuzz/require.h"
#include "support/dice.h"
#include "support/scenario.h"

namespace {

using MCBinModel::AttributeBins;
using MCBinModel::BinModel;
using MCBinModel::VariableInfo;
using MCBinModel::VariableKind;

std::string AnyText(Dice& dice) {
  std::string text;
  for (int pieces = 1 + dice.Roll(4); pieces > 0; --pieces) {
    text += dice.OneOf({"a",
                        "1",
                        "NA",
                        " ",
                        ",",
                        ";",
                        "\"",
                        "'",
                        "`",
                        "\\",
                        "E'",
                        "\n",
                        "\r\n",
                        "\t",
                        "\x1b[31m",
                        "\x7f",
                        "<b>",
                        "&amp;",
                        "]]>",
                        "-->",
                        "--",
                        "/*",
                        "{}",
                        "\"\"\"",
                        "\xc3\xa9",
                        "\xe2\x80\xae",
                        "\xe2\x80\xa8",
                        "\xef\xbb\xbf"});
  }
  return text;
}

double AnyNumber(Dice& dice) {
  return dice.OneOf({0.0, -0.0, 1.0, 2.0, -1.0, 0.1, 0.1 + 0.2, 0.3, 1e15, 5e-324, 1e308, -1e308,
                     dice.Roll(9) / 2.0, dice.Roll(9) / 10.0});
}

// In ascending order, each once.
std::vector<double> AnyNumbers(Dice& dice, int most) {
  std::vector<double> numbers;
  for (int count = dice.Roll(most + 1); count > 0; --count) numbers.push_back(AnyNumber(dice));
  std::sort(numbers.begin(), numbers.end());
  numbers.erase(std::unique(numbers.begin(), numbers.end()), numbers.end());
  return numbers;
}

VariableInfo AnyVariable(Dice& dice, VariableKind kind, const std::string& unique) {
  VariableInfo variable;
  variable.name = dice.OneIn(3) ? unique : AnyText(dice) + unique;
  variable.kind = kind;
  for (int code = 0, count = 2 + dice.Roll(4); code < count; ++code) {
    if (kind == VariableKind::kNumericCategorical) variable.numbers.push_back(code / 2.0);
    if (kind != VariableKind::kStringCategorical) continue;
    variable.texts.push_back(dice.OneIn(2) ? std::string(1, "abcdef"[code])
                                           : AnyText(dice) + std::to_string(code));
  }
  if (kind == VariableKind::kStringCategorical) {
    if (dice.OneIn(3)) variable.missing.texts = {variable.texts.front(), AnyText(dice)};
    return variable;
  }
  variable.missing.numbers = AnyNumbers(dice, 2);
  if (dice.OneIn(3)) variable.missing.interval = {AnyNumber(dice), 1e308};
  return variable;
}

AttributeBins AnyBins(Dice& dice, const BinModel& model, std::size_t attribute) {
  AttributeBins bins;
  bins.attribute = attribute;
  const VariableInfo& variable = model.attributes[attribute];
  if (variable.IsCategorical()) {
    for (std::size_t code = 0; code + 1 < variable.GetCategoryCount(); ++code) {
      if (dice.OneIn(2)) bins.cutPoints.push_back(static_cast<double>(code));
    }
  } else {
    bins.cutPoints = AnyNumbers(dice, 5);
  }
  for (std::size_t bin = 0; bin <= bins.cutPoints.size(); ++bin) {
    std::vector<double> classes(model.targets.empty() ? 1 : model.targets[0].GetCategoryCount());
    for (double& weight : classes) weight = dice.Roll(5);
    bins.binWeights.push_back(std::accumulate(classes.begin(), classes.end(), 0.0));
    bins.validWeight += bins.binWeights.back();
    if (!model.targets.empty()) bins.classWeights.push_back(classes);
  }
  bins.weightWithMissing = bins.validWeight + dice.Roll(3);
  return bins;
}

BinModel AnyModel(Dice& dice) {
  constexpr VariableKind kCategorical[] = {VariableKind::kNumericCategorical,
                                           VariableKind::kStringCategorical};
  BinModel model;
  model.settings.rightClosed = dice.OneIn(2);
  model.source.delimiter = dice.OneOf({',', ';', '\t', '|'});
  model.source.missingTexts = {"NA", AnyText(dice)};
  if (dice.OneIn(2)) {
    model.targets.push_back(AnyVariable(dice, kCategorical[dice.Roll(2)], "t"));
  } else {
    model.settings.algorithm = MCBinModel::Algorithm::kEqualFrequency;
  }
  for (int count = 1 + dice.Roll(3); count > 0; --count) {
    const auto kind = dice.OneIn(2) ? VariableKind::kContinuous : kCategorical[dice.Roll(2)];
    model.attributes.push_back(AnyVariable(dice, kind, std::to_string(count)));
  }
  for (std::size_t attribute = 0; attribute < model.attributes.size(); ++attribute) {
    model.results.push_back(AnyBins(dice, model, attribute));
    if (!model.targets.empty()) model.results.back().target = 0;
  }
  return model;
}

// A value at a cut point, beside one, missing, or of any other kind.
std::string AnyField(Dice& dice, const VariableInfo& variable, const std::vector<double>& cuts) {
  if (dice.OneIn(8)) return dice.OneOf({"", " ", "NA", "nan", "-inf", "1e999"});
  if (variable.IsCategorical()) {
    return dice.OneIn(8) ? "unknown"
                         : variable.GetLabel(static_cast<std::size_t>(
                               dice.Roll(static_cast<int>(variable.GetCategoryCount()))));
  }
  double number = AnyNumber(dice);
  if (!cuts.empty())
    number = cuts[static_cast<std::size_t>(dice.Roll(static_cast<int>(cuts.size())))];
  const double infinity = std::numeric_limits<double>::infinity();
  number = std::nextafter(number, dice.OneOf({number, infinity, -infinity}));
  return MCBinModel::FormatNumber(number);
}

std::string AnyData(Dice& dice, const BinModel& model) {
  std::vector<const VariableInfo*> variables;
  for (const VariableInfo& target : model.targets) variables.push_back(&target);
  for (const VariableInfo& attribute : model.attributes) variables.push_back(&attribute);
  std::string data;
  for (int record = 0, count = dice.Roll(30); record <= count; ++record) {
    for (std::size_t i = 0; i < variables.size(); ++i) {
      const std::size_t attribute = i - std::min(i, model.targets.size());
      if (i > 0) data += model.source.delimiter;
      MCBinModel::AppendField(
          data,
          record == 0 ? variables[i]->name
                      : AnyField(dice, *variables[i], model.results[attribute].cutPoints),
          dice.OneIn(5), model.source.delimiter);
    }
    data += dice.OneOf({"\n", "\r\n"});
  }
  return data;
}

void Damage(Dice& dice, std::string& text) {
  const auto somewhere = [&] {
    return static_cast<std::size_t>(dice.Roll(static_cast<int>(text.size())));
  };
  for (int times = 1 + dice.Roll(3); times > 0; --times) {
    const std::size_t at = 1 + somewhere() % (text.size() - 1);
    switch (dice.Roll(3)) {
      case 0:
        text[at] = static_cast<char>(dice.Roll(256));
        break;
      case 1:
        text.erase(at, 1 + somewhere() % 8);
        break;
      default:
        text.insert(at, dice.OneIn(2) ? AnyText(dice) : text.substr(somewhere(), 20));
    }
  }
}

TEST(AnyBins, AreCountedReportedAndExportedWell) {
  constexpr int kTries = 600;
  int accepted = 0;
  for (std::uint64_t seed = TestSeed(); seed < TestSeed() + kTries; ++seed) {
    Dice dice(seed);
    const BinModel model = AnyModel(dice);
    std::string input(1, static_cast<char>(dice.Roll(256)));
    input += MCBinModel::WriteBinFile(model);
    input += '\0';
    input += AnyData(dice, model);
    if (dice.OneIn(3)) Damage(dice, input);
    try {
      if (TryBins(input)) ++accepted;
    } catch (const std::exception& fault) {
      FAIL() << "MCBINNING_TEST_SEED=" << seed << ": " << fault.what() << "\n" << input;
    }
  }
  EXPECT_GT(accepted, kTries / 2);
}

}  // namespace
