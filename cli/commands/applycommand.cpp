#include <unistd.h>

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>

#include "cli/commands/commandfiles.h"
#include "cli/commands/commands.h"
#include "cli/terminal/exitguard.h"
#include "cli/terminal/notes.h"
#include "cli/terminal/progressbar.h"
#include "cli/terminal/resultstream.h"
#include "csv/binwriter.h"
#include "csv/csvreader.h"
#include "csv/recordpass.h"
#include "io/outputfile.h"

namespace MCBin {

namespace {

// Where the records go: standard output, or a file that is there once all of them are.
class RecordOutput {
 public:
  explicit RecordOutput(const std::string& path) {
    if (path != "-") fFile.emplace(path);
  }

  void Write(std::string_view text) {
    if (!fFile) {
      fOut.Write(text);
      return;
    }
    constexpr std::size_t kPendingSize = 65536;
    fPending += text;
    if (fPending.size() >= kPendingSize) WritePending();
  }

  void Close() {
    if (fFile) {
      WritePending();
      fFile->Commit();
    }
    fOut.Close();
  }

  bool IsReaderGone() const { return fOut.IsReaderGone(); }

 private:
  void WritePending() {
    fFile->Write(fPending);
    fPending.clear();
  }

  ResultStream fOut;
  std::optional<OutputFile> fFile;
  std::string fPending;  // for the file
};

void CopyRecords(CsvReader& reader, BinWriter& writer, RecordOutput& out, ProgressBar& progress) {
  RecordPass pass(reader, [&](std::uint64_t bytesRead) { progress.Update(bytesRead); });
  while (!out.IsReaderGone() && pass.Next()) out.Write(writer.WriteRecord(reader));
  out.Close();
}

}  // namespace

int ApplyCommand(const ApplyOptions& options) {
  CheckFiles({{"the bin file", options.binFile}, {"the data", options.input}},
             {{"--output", options.output}});
  if (!options.quiet) PrintIfFromTerminal(options.input);
  const bool outputIsTerminal = options.output == "-" && isatty(STDOUT_FILENO) == 1;
  RecordOutput out(options.output);
  const BinsToUse bins(options);
  DataFile given(bins.model, options, options.input);
  BinWriter writer(bins.model, bins.results, options.columns, given.names, given.missingTexts,
                   {given.delimiter, given.numbers.decimal});

  ProgressBar progress(!options.quiet && !outputIsTerminal && given.input.IsRegularFile());
  progress.StartBytes("applying", given.input.GetSize());
  out.Write(writer.WriteHeader(given.reader));
  CopyRecords(given.reader, writer, out, progress);
  progress.Finish();
  if (options.quiet) return kExitDone;
  PrintNotes(writer.GetNotes());
  if (options.columns.form == MCBinModel::BinForm::kWeightOfEvidence) {
    PrintEvidenceNote(bins.model, bins.results);
    PrintMovedCutPoints(bins.model, bins.results);
    const std::optional<std::string> infinite = writer.DescribeInfinite();
    if (infinite) PrintNote(*infinite + "; --woe-adjust WEIGHT makes them finite");
  }
  const std::optional<std::string> empty = writer.DescribeEmpty();
  if (empty) PrintNote(*empty + "; --missing-as TEXT fills it");
  return kExitDone;
}

}  // namespace MCBin
