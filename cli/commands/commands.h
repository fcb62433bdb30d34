#pragma once

#include <optional>
#include <string>
#include <vector>

#include "binmodel/export/binexport.h"
#include "binmodel/model/binsettings.h"
#include "binmodel/refine/refinesettings.h"
#include "cli/terminal/terminalstyle.h"
#include "csv/binwriter.h"
#include "csv/columnselection.h"
#include "csv/numberformat.h"
#include "metadata/ibinvariable.h"

namespace MCBin {

// The commands of mcbin, and what the user asks of them. An input "-" is standard input, an output
// "-" standard output.
//
// Each returns the exit code. Results go to standard output, messages to standard error; no
// temporary file stays behind. Each throws Refusal, UsageError and Interrupt::Requested.

// Of a command that shows or uses weights of evidence; what is unset stays as the bin file says.
struct EvidenceOptions {
  std::vector<std::string> events;   // classes, of one target each
  std::vector<std::string> classes;  // that come first where classes are listed
  std::optional<double> adjustment;  // added to each class weight of a bin; 0: nothing is smoothed
};

// What tables on standard output look like.
struct TableOptions {
  MCBinModel::TableFormat format = MCBinModel::TableFormat::kText;
  bool summaryOnly = false;
  int top = 0;  // 0: all
  ColorChoice color = ColorChoice::kAuto;
};

// Of a command that makes bins.
struct ModelOutputOptions {
  std::optional<std::string> jsonFile;
  std::optional<std::string> reportFile;
  TableOptions tables;
  bool quiet = false;
  bool strict = false;
};

// Texts that mean missing, given beside the usual ones or in their place.
struct MissingTextOptions {
  std::vector<std::string> added;
  std::optional<std::vector<std::string>> only;

  // As MissingTexts takes them; the usual ones are so already.
  std::vector<std::string> GetAll(const std::vector<std::string>& usual,
                                  const NumberFormat& numbers) const;
};

// How a file parts its fields and writes its numbers, as far as it is given.
struct FileFormatOptions {
  std::optional<char> delimiter;
  std::optional<char> decimal;
  std::optional<char> thousands;  // NUL: none

  NumberFormat GetNumbers(const NumberFormat& usual) const;
};

// Throws UsageError where one character has two meanings.
void CheckNumberMarks(const NumberFormat& numbers);

struct RunOptions : ModelOutputOptions {
  MCBinModel::BinSettings settings;
  EvidenceOptions evidence;
  std::optional<MCBinModel::RefineSettings> refinement;  // of the bins that were found

  // The inputs, which are read as one, and how to read them.
  std::vector<std::string> inputs;  // none: standard input
  char delimiter = ',';
  NumberFormat numbers;
  std::vector<std::string> missingTexts;
  ColumnChoice columns;
  IBINVariable::BINWRoundingOption rounding = IBINVariable::RoundClosest;

  // The run.
  std::optional<std::string> tempDir;  // unset: TMPDIR, or /tmp
  int jobs = 1;                        // 0: one for every core
};

struct RefineOptions : ModelOutputOptions {
  std::string binFile;
  EvidenceOptions evidence;
  MCBinModel::RefineSettings settings;
};

// Of a command that uses bins on data.
struct DataOptions {
  std::string binFile;
  std::string input = "-";
  std::optional<std::string> target;
  EvidenceOptions evidence;
  FileFormatOptions format;         // unset: as the bin file says
  MissingTextOptions missingTexts;  // the usual ones are the bin file's
  bool quiet = false;
};

struct ApplyOptions : DataOptions {
  BinColumns columns;
  std::string output = "-";
};

struct EvaluateOptions : DataOptions {
  std::vector<std::string> inputs;        // none: standard input
  std::optional<std::string> updateFile;  // the bins with the counts of the only input
  TableOptions tables;
  std::optional<std::string> weight;  // unset: the bin file's
  bool unweighted = false;            // every record counts once, whatever the bin file says
};

enum class ExportFormat { kSql, kPmml, kPython };

struct ExportOptions {
  std::string binFile;
  ExportFormat format = ExportFormat::kSql;
  std::string dialect = "ansi";  // of SQL
  std::string table;             // of SQL
  std::optional<std::string> target;
  EvidenceOptions evidence;
  MCBinModel::ExportOptions columns;
  std::string output = "-";
  bool quiet = false;
};

struct ReportOptions {
  std::string binFile;
  std::string output = "-";
  EvidenceOptions evidence;
};

// `supervised` and `equal-frequency`: makes bins.
int RunCommand(const RunOptions& options);

// Joins neighbouring bins of a bin file.
int RefineCommand(const RefineOptions& options);

// Copies the input to standard output, record by record, with the bins of a bin file.
int ApplyCommand(const ApplyOptions& options);

// Counts the bins of a bin file on other data, each file for itself, and prints all side by side.
int EvaluateCommand(const EvaluateOptions& options);

// Writes a bin file's rules in another language.
int ExportCommand(const ExportOptions& options);

// Shows a bin file as an HTML page.
int ReportCommand(const ReportOptions& options);

}  // namespace MCBin
