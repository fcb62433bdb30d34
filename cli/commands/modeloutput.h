#pragma once

#include <optional>
#include <vector>

#include "binmodel/model/binmodel.h"
#include "binmodel/report/binreport.h"
#include "cli/commands/commandfiles.h"
#include "cli/terminal/resultstream.h"
#include "io/outputfile.h"

namespace MCBin {

// What suits standard output as it is now, which a ResultStream changes.
MCBinModel::TextStyle MakeTextStyle(const TableOptions& options);

// What a command writes of the bins that it made: tables on standard output, a bin file, a page.
// The files are made before the command's work, so that it does not fail after it.
class ModelOutput {
 public:
  // Takes standard output. Throws Refusal.
  explicit ModelOutput(const ModelOutputOptions& options);

  // Both files are whole before either of them replaces another. Throws Refusal and
  // Interrupt::Requested.
  void Write(const MCBinModel::BinModel& model);

 private:
  const MCBinModel::TextStyle fStyle;  // before standard output is taken
  const bool fJsonOnly;
  ResultStream fOut;
  std::optional<OutputFile> fJsonFile;
  std::optional<OutputFile> fReportFile;
};

// That of a command that made these bins: what `strict` asks for, or kExitDone. That nothing is
// worth a cut is a result and no warning.
int ExitCodeOf(const MCBinModel::BinModel& model, bool strict);

// Refuses outputs of these options that cannot be what is meant, and what CheckFiles does. Throws
// UsageError.
void CheckModelOutput(const std::vector<CommandInput>& inputs, const ModelOutputOptions& options);

}  // namespace MCBin
