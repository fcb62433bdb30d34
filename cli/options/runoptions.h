#pragma once

#include <optional>
#include <string>
#include <vector>

#include "binmodel/model/missingdefinition.h"
#include "binmodel/report/textstyle.h"
#include "metadata/ibinvariable.h"

namespace MCBin {

enum class Algorithm { kSupervised, kEqualFrequency };

// What the user asked of `mcbin supervised` or `mcbin equal-frequency`.
struct RunOptions {
  Algorithm algorithm = Algorithm::kSupervised;

  // The input and how to read it.
  std::string input = "-";  // "-" is standard input
  char delimiter = ',';
  std::vector<std::string> missingTexts = {"NA"};
  std::vector<MissingDefinition> missing;

  // The columns, by name.
  std::vector<std::string> targets;
  std::vector<std::string> attributes;  // empty: every continuous column
  std::vector<std::string> categorical;
  std::vector<std::string> continuous;
  std::optional<std::string> weight;
  IBINVariable::BINWRoundingOption rounding = IBINVariable::RoundClosest;

  // The method.
  bool rightClosed = true;
  int prebinAbove = 1000;  // 0: never
  int prebins = 1000;
  double smallBins = 0.0;
  int bins = 10;  // equal-frequency only

  // The run.
  std::optional<std::string> tempDir;   // unset: TMPDIR, or /tmp
  std::optional<std::string> jsonFile;  // "-" is standard output
  std::optional<std::string> reportFile;
  ColorChoice color = ColorChoice::kAuto;
  int jobs = 1;  // 0: one for every core
  bool quiet = false;
  bool strict = false;
};

}  // namespace MCBin
