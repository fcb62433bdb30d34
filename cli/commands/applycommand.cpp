#include <unistd.h>

#include "cli/commands/commandfiles.h"
#include "cli/commands/commands.h"
#include "cli/terminal/exitguard.h"
#include "cli/terminal/notes.h"
#include "cli/terminal/progressbar.h"
#include "cli/terminal/resultstream.h"
#include "csv/binwriter.h"
#include "csv/columnnames.h"
#include "csv/csvreader.h"
#include "csv/missingtexts.h"
#include "csv/recordpass.h"
#include "io/inputstream.h"

namespace MCBin {

namespace {

void CopyRecords(CsvReader& reader, BinWriter& writer, ResultStream& out, ProgressBar& progress) {
  RecordPass pass(reader, [&](std::uint64_t bytesRead) { progress.Update(bytesRead); });
  while (!out.IsReaderGone() && pass.Next()) out.Write(writer.WriteRecord(reader));
  out.Close();
}

}  // namespace

int ApplyCommand(const ApplyOptions& options) {
  CheckFiles({{"the bin file", options.binFile}, {"the data", options.input}}, {});
  const bool outputIsTerminal = isatty(STDOUT_FILENO) == 1;
  ResultStream out;
  const MCBinModel::BinModel model = LoadBinFile(options.binFile);
  std::vector<std::string> notes;
  const std::vector<std::size_t> results =
      ChooseResults(model, options.target, options.binFile, notes);
  if (!options.quiet) PrintNotes(notes);

  const InputStream input(options.input, "a CSV file");
  const char delimiter = options.delimiter.value_or(model.source.delimiter);
  CsvReader reader(input.Get(), input.GetName(), delimiter);
  const ColumnNames names = ColumnNames::Read(reader);
  const MissingTexts missingTexts(options.missingTexts.value_or(model.source.missingTexts));
  BinWriter writer(model, results, options.columns, names, missingTexts, delimiter);

  constexpr double kBytesPerMB = 1e6;
  ProgressBar progress(!options.quiet && !outputIsTerminal && input.IsRegularFile());
  progress.Start("applying", input.GetSize(), "MB", kBytesPerMB);
  out.Write(writer.WriteHeader(reader));
  CopyRecords(reader, writer, out, progress);
  progress.Finish();
  if (!options.quiet) PrintNotes(writer.GetNotes());
  return kExitDone;
}

}  // namespace MCBin
