#include "cli/commands/commandfiles.h"

#include <fmt/format.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <filesystem>
#include <iterator>
#include <numeric>
#include <set>
#include <system_error>
#include <utility>

#include "binmodel/file/binfile.h"
#include "binmodel/model/refusal.h"
#include "binmodel/model/resultselection.h"
#include "binmodel/model/targetclasses.h"
#include "binmodel/report/reportcells.h"
#include "binmodel/text/displaytext.h"
#include "cli/terminal/notes.h"
#include "cli/terminal/usageerror.h"
#include "io/inputstream.h"
#include "io/outputfile.h"
#include "io/pathtext.h"

namespace MCBin {

namespace {

using Identity = std::pair<dev_t, ino_t>;

// Which regular file it is; "-" is what the descriptor has open. Other kinds, such as a terminal,
// are read and written at the same time with good reason.
std::optional<Identity> IdentityOf(const std::string& path, int standardDescriptor) {
  struct stat status = {};
  const int failed = path == "-" ? fstat(standardDescriptor, &status) : stat(path.c_str(), &status);
  if (failed != 0 || !S_ISREG(status.st_mode)) return std::nullopt;
  return Identity{status.st_dev, status.st_ino};
}

void CheckIsNotInput(const CommandOutput& output, const std::vector<CommandInput>& inputs) {
  const std::optional<Identity> written = IdentityOf(*output.path, STDOUT_FILENO);
  if (!written) return;
  for (const CommandInput& input : inputs) {
    if (IdentityOf(input.path, STDIN_FILENO) != written) continue;
    throw UsageError(
        *output.path == "-"
            ? fmt::format("standard output: this is {}, which would be overwritten", input.what)
            : fmt::format("{} {}: this is {}, which would be overwritten", output.option,
                          MCBinModel::QuotedText(*output.path), input.what));
  }
}

void CheckStandardInput(const std::vector<CommandInput>& inputs) {
  const CommandInput* first = nullptr;
  for (const CommandInput& input : inputs) {
    if (input.path != "-") continue;
    if (first == nullptr) {
      first = &input;
    } else if (first->what == input.what) {
      throw UsageError(fmt::format("{} can come from standard input once only", input.what));
    } else {
      throw UsageError(
          fmt::format("{} and {} cannot both come from standard input", first->what, input.what));
    }
  }
}

void CheckAreTwoFiles(const CommandOutput& first, const CommandOutput& second) {
  std::error_code ignored;
  const auto resolved = [&ignored](const CommandOutput& output) {
    return std::filesystem::weakly_canonical(*output.path, ignored);
  };
  const std::filesystem::path place = resolved(first);
  const bool areOne = !place.empty() && place == resolved(second);
  if (first.path == second.path || areOne) {
    throw UsageError(fmt::format("{} and {} name the same file", first.option, second.option));
  }
}

// Of a command that also reads data: which file comes first is easily mixed up.
MCBinModel::BinModel LoadBinFileBeforeData(const DataOptions& options) {
  try {
    return LoadBinFile(options.binFile, options.evidence);
  } catch (const MCBinModel::Refusal& refusal) {
    if (refusal.GetCode() != MCBinModel::RefusalCode::kWrongFile) throw;
    throw MCBinModel::Refusal(refusal.GetCode(),
                              {refusal.GetPlace(), refusal.GetSubject(), refusal.GetDetail()},
                              refusal.GetReason() + "; the bin file comes first, then the data");
  }
}

NumberFormat ChooseNumbers(const MCBinModel::BinSource& source, const DataOptions& options,
                           char delimiter) {
  const NumberFormat numbers = options.format.GetNumbers({source.decimal, source.thousands});
  CheckNumberMarks(numbers);
  const bool areBothMeant = options.format.delimiter || !options.format.decimal;
  if (!areBothMeant && numbers.decimal == delimiter) {
    throw UsageError(fmt::format(
        "--decimal '{}' is the delimiter, too; say with --delimiter what parts the fields",
        delimiter));
  }
  return numbers;
}

std::vector<std::size_t> ChooseResultsAloud(const MCBinModel::BinModel& model,
                                            const DataOptions& options) {
  std::vector<std::string> notes;
  std::vector<std::size_t> results = ChooseResults(model, options.target, options.binFile, notes);
  if (!options.quiet) PrintNotes(notes);
  return results;
}

}  // namespace

void CheckFiles(const std::vector<CommandInput>& inputs,
                const std::vector<CommandOutput>& outputs) {
  CheckStandardInput(inputs);
  CheckIsNotInput({"", "-"}, inputs);
  for (auto output = outputs.begin(); output != outputs.end(); ++output) {
    if (!output->path) continue;
    CheckIsNotInput(*output, inputs);
    for (auto other = outputs.begin(); other != output; ++other) {
      if (other->path) CheckAreTwoFiles(*other, *output);
    }
  }
}

void PrintRepeatedFiles(const std::vector<std::string>& paths) {
  std::set<Identity> known;
  for (const std::string& path : paths) {
    const std::optional<Identity> file = IdentityOf(path, STDIN_FILENO);
    if (!file || known.insert(*file).second) continue;
    PrintNote(fmt::format("{} has been named before; its records count once more",
                          MCBinModel::QuotedText(PathText(path))));
  }
}

void PrintIfFromTerminal(const std::string& path) {
  if (path != "-" || isatty(STDIN_FILENO) != 1) return;
  PrintNote("reading CSV text from the terminal; end it with Ctrl-D");
}

MCBinModel::BinModel LoadBinFile(const std::string& path, const EvidenceOptions& evidence) {
  const InputText input = ReadAll(path, '{', "a bin file, which mcbin writes with --json");
  MCBinModel::BinModel model = MCBinModel::ParseBinFile(input.text, input.name);
  MCBinModel::ChooseEvents(model.targets, evidence.events);
  if (evidence.adjustment) model.settings.evidenceAdjustment = *evidence.adjustment;
  if (!evidence.classes.empty()) MCBinModel::OrderClasses(model, evidence.classes);
  return model;
}

void PrintEvidenceNote(const MCBinModel::BinModel& model, const std::vector<std::size_t>& results) {
  const MCBinModel::VariableInfo& target = *model.GetTarget(model.results[results.front()]);
  PrintNote(fmt::format("weight of evidence for the target {}, {}",
                        MCBinModel::QuotedText(target.name), MCBinModel::EventFact(model, target)));
}

std::vector<std::size_t> AllResults(const MCBinModel::BinModel& model) {
  std::vector<std::size_t> results(model.results.size());
  std::iota(results.begin(), results.end(), std::size_t{0});
  return results;
}

void PrintMovedCutPoints(const MCBinModel::BinModel& model,
                         const std::vector<std::size_t>& results) {
  std::vector<std::size_t> moved;
  std::copy_if(results.begin(), results.end(), std::back_inserter(moved),
               [&](std::size_t index) { return model.results[index].hasMovedCutPoints; });
  if (moved.empty()) return;
  PrintNote(fmt::format(
      "warning: cut points were moved since the cases were counted, so that weights and weights of "
      "evidence are not those of these bins: {}; 'mcbin evaluate --update FILE' counts them anew",
      NameResults(model, moved)));
}

std::vector<std::size_t> ChooseResults(const MCBinModel::BinModel& model,
                                       const std::optional<std::string>& target,
                                       const std::string& binFile,
                                       std::vector<std::string>& notes) {
  return MCBinModel::LeaveOutFailedResults(model, MCBinModel::SelectResults(model, target, binFile),
                                           notes, binFile);
}

BinsToUse::BinsToUse(const DataOptions& options)
    : model(LoadBinFileBeforeData(options)), results(ChooseResultsAloud(model, options)) {}

DataFile::DataFile(const MCBinModel::BinModel& model, const DataOptions& options,
                   const std::string& path)
    : input(path, "a CSV file"),
      delimiter(options.format.delimiter.value_or(model.source.delimiter)),
      numbers(ChooseNumbers(model.source, options, delimiter)),
      reader(input.Get(), input.GetName(), delimiter, numbers),
      names(ColumnNames::Read(reader)),
      missingTexts(options.missingTexts.GetAll(model.source.missingTexts, numbers)) {}

std::vector<std::string> MissingTextOptions::GetAll(const std::vector<std::string>& usual,
                                                    const NumberFormat& numbers) const {
  std::vector<std::string> all = only ? PlainMissingTexts(*only, numbers) : usual;
  const std::vector<std::string> more = PlainMissingTexts(added, numbers);
  all.insert(all.end(), more.begin(), more.end());
  return all;
}

NumberFormat FileFormatOptions::GetNumbers(const NumberFormat& usual) const {
  return {decimal.value_or(usual.decimal), thousands.value_or(usual.thousands)};
}

void CheckNumberMarks(const NumberFormat& numbers) {
  if (numbers.thousands == numbers.decimal) {
    throw UsageError(
        "--thousands: give one of . , ' _ and blank that is not the decimal mark, which --decimal "
        "says");
  }
}

void WriteOutput(const std::string& path, std::string_view content, ResultStream& out) {
  if (path == "-") {
    out.WriteContent(content);
    out.Close();
  } else {
    OutputFile file(path);
    file.Write(content);
    file.Commit();
  }
}

}  // namespace MCBin
