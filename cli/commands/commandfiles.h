#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "binmodel/model/binmodel.h"
#include "cli/commands/commands.h"
#include "cli/terminal/resultstream.h"
#include "csv/columnnames.h"
#include "csv/csvreader.h"
#include "csv/missingtexts.h"
#include "io/inputstream.h"

namespace MCBin {

// A file that a command reads; "-" is standard input.
struct CommandInput {
  std::string what;  // "the bin file"
  std::string path;
};

// One that it writes, when it is asked for; "-" is standard output.
struct CommandOutput {
  std::string option;
  std::optional<std::string> path;
};

// Refuses two inputs from standard input, two outputs in one file, and an output, standard output
// included, over an input. Throws UsageError.
void CheckFiles(const std::vector<CommandInput>& inputs, const std::vector<CommandOutput>& outputs);

// Says which of the files is one that comes before it, under the same name or another.
void PrintRepeatedFiles(const std::vector<std::string>& paths);

// Says so when the data are to be typed, which a forgotten file looks like.
void PrintIfFromTerminal(const std::string& path);

// Reads a bin file; "-" is standard input. The options come before what the file says. Throws
// Refusal and Interrupt::Requested.
MCBinModel::BinModel LoadBinFile(const std::string& path, const EvidenceOptions& evidence = {});

// Says what the weights of evidence of these results are about. The results are of one target with
// two classes.
void PrintEvidenceNote(const MCBinModel::BinModel& model, const std::vector<std::size_t>& results);

// The indexes of all results of a model.
std::vector<std::size_t> AllResults(const MCBinModel::BinModel& model);

// Warns of those of these results whose counts are older than their cut points, if there are any.
void PrintMovedCutPoints(const MCBinModel::BinModel& model,
                         const std::vector<std::size_t>& results);

// The results of a bin file that a command uses: those of one target, without the ones that an
// error left without bins; `notes` gets a line about these. Throws Refusal.
std::vector<std::size_t> ChooseResults(const MCBinModel::BinModel& model,
                                       const std::optional<std::string>& target,
                                       const std::string& binFile, std::vector<std::string>& notes);

// A bin file to use.
struct BinsToUse {
  // Throws Refusal, UsageError and Interrupt::Requested. Prints what ChooseResults notes.
  explicit BinsToUse(const DataOptions& options);

  const MCBinModel::BinModel model;
  const std::vector<std::size_t> results;  // as ChooseResults says
};

// Data to use bins on, read up to the header.
struct DataFile {
  // Throws Refusal, UsageError and Interrupt::Requested.
  DataFile(const MCBinModel::BinModel& model, const DataOptions& options, const std::string& path);

  const InputStream input;
  const char delimiter;
  const NumberFormat numbers;
  CsvReader reader;
  const ColumnNames names;
  const MissingTexts missingTexts;
};

// Writes a command's only output; "-" is `out`, which is closed. Throws Refusal and
// Interrupt::Requested.
void WriteOutput(const std::string& path, std::string_view content, ResultStream& out);

}  // namespace MCBin
