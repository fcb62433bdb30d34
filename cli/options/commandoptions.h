#pragma once

#include <CLI/CLI.hpp>
#include <cstddef>
#include <optional>
#include <string>
#include <vector>

#include "binmodel/apply/binvalues.h"
#include "cli/commands/commands.h"

namespace MCBin {

// What the subcommands' options have in common.

// Options of a command that help lists together: all that are added while it lives and are in no
// group yet.
class OptionGroup {
 public:
  OptionGroup(CLI::App& command, std::string name);
  ~OptionGroup();
  OptionGroup(const OptionGroup&) = delete;
  OptionGroup& operator=(const OptionGroup&) = delete;

  // The options so far.
  std::vector<CLI::Option*> GetOptions() const;

 private:
  CLI::App& fCommand;
  const std::string fName;
  const std::size_t fFirst;
};

// An option that may be repeated and takes one text each time.
void AddList(CLI::App& command, const std::string& flag, std::vector<std::string>& values,
             const std::string& typeName, const std::string& help);

void AddChoice(CLI::App& command, const std::string& flag, std::string& value,
               const std::vector<std::string>& choices, const std::string& help);

// A number from `least` to `most`; NaN is refused.
void AddNumber(CLI::App& command, const std::string& flag, double& value, double least, double most,
               const std::string& typeName, const std::string& help);

// --event and --woe-adjust, which a command that reads bins takes from the bin file unless they are
// given, and --classes of a command that lists classes.
void AddEvidence(CLI::App& command, EvidenceOptions& options);
void AddEvidenceOfBins(CLI::App& command, EvidenceOptions& options);
void AddClasses(CLI::App& command, EvidenceOptions& options);
// A whole number from `least` up.
void AddCount(CLI::App& command, const char* flag, int& count, int least, const char* help);

// --format, --summary, --top and --color, of which ParseTables takes over what is still text.
struct RawTables {
  std::string format = "text";
  std::string color = "auto";
};
void AddTables(CLI::App& command, RawTables& raw, TableOptions& options);
void ParseTables(const RawTables& raw, TableOptions& options);

// Of a command that makes bins: the bin file, by these flags, the page, the tables, whose values
// ParseTables takes over, --quiet and --strict.
void AddModelOutput(CLI::App& command, const char* jsonFlags, RawTables& raw,
                    ModelOutputOptions& options);

// The file that a command reads: a bin file, or a CSV file.
void AddBinFile(CLI::App& command, std::string& path);
void AddCsvFile(CLI::App& command, std::string& path);

// --target of a command that reads a bin file.
void AddTargetOfBins(CLI::App& command, std::optional<std::string>& target);

// --na, whose texts come beside the ones that hold anyway, and --na-only, whose texts replace them.
struct RawMissingTexts {
  std::vector<std::string> added;
  std::vector<std::string> only;
};
void AddMissingTexts(CLI::App& command, RawMissingTexts& raw, const char* usual);
MissingTextOptions ParseMissingTexts(const RawMissingTexts& raw);

// --delimiter, --decimal and --thousands. ParseFileFormat throws UsageError.
struct RawFileFormat {
  std::optional<std::string> delimiter;
  std::string decimal;
  std::optional<std::string> thousands;  // an empty one: none
};
struct UsualFileFormat {  // in words
  const char* delimiter;
  const char* decimal;
  const char* thousands;
};
void AddFileFormat(CLI::App& command, RawFileFormat& raw, const UsualFileFormat& usual);
FileFormatOptions ParseFileFormat(const RawFileFormat& raw);

// Of a command that uses bins on data: both files and --target; --na, --delimiter and --quiet,
// whose values ParseReading takes over. Throws UsageError.
struct RawReading {
  RawFileFormat format;
  RawMissingTexts missingTexts;
};
void AddBinsAndData(CLI::App& command, DataOptions& options);
void AddReading(CLI::App& command, RawReading& raw, DataOptions& options);
void ParseReading(const RawReading& raw, DataOptions& options);

// --missing-as, of which an empty text is a text.
void AddMissingAs(CLI::App& command, std::optional<std::string>& text, const std::string& typeName,
                  const std::string& help);

// --as, and what its value means.
void AddBinForm(CLI::App& command, std::string& form);
MCBinModel::BinForm ParseBinForm(const std::string& form);

// The option's value as a character. Throws UsageError.
char ParseDelimiter(const std::string& text);

// The names of all lists, in order. Throws UsageError.
std::vector<std::string> JoinLists(const std::vector<std::string>& lists);

// The same for --na. A quoted empty item keeps its quotes: it stands for a quoted empty field.
std::vector<std::string> JoinMissingTexts(const std::vector<std::string>& lists);

}  // namespace MCBin
