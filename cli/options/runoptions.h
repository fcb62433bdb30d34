#pragma once

#include <optional>
#include <string>
#include <vector>

#include "binmodel/model/binsettings.h"
#include "cli/terminal/terminalstyle.h"
#include "csv/columnselection.h"
#include "metadata/ibinvariable.h"

namespace MCBin {

// What the user asked of `mcbin supervised` or `mcbin equal-frequency`.
struct RunOptions {
  MCBinModel::BinSettings settings;

  // The input and how to read it.
  std::string input = "-";  // "-" is standard input
  char delimiter = ',';
  std::vector<std::string> missingTexts = {"NA"};
  ColumnChoice columns;
  IBINVariable::BINWRoundingOption rounding = IBINVariable::RoundClosest;

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
