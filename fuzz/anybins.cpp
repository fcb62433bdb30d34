#include "fuzz/anybins.h"

#include <expat.h>
#include <fcntl.h>
#include <sys/mman.h>
#include <unistd.h>

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "binmodel/apply/bincounter.h"
#include "binmodel/apply/binvalues.h"
#include "binmodel/export/binexport.h"
#include "binmodel/file/binfile.h"
#include "binmodel/model/refusal.h"
#include "binmodel/model/resultselection.h"
#include "binmodel/report/binreport.h"
#include "binmodel/text/utf8.h"
#include "csv/binwriter.h"
#include "csv/columnnames.h"
#include "csv/csvreader.h"
#include "csv/fieldcoder.h"
#include "csv/missingtexts.h"
#include "csv/recordcount.h"
#include "fuzz/require.h"
#include "io/filedescriptor.h"
#include "io/outputfile.h"

namespace {

using MCBin::CsvReader;
using MCBin::FileDescriptor;
using MCBinModel::BinForm;
using MCBinModel::BinModel;
using MCBinModel::Recount;

constexpr BinForm kForms[] = {BinForm::kIndex, BinForm::kLabel, BinForm::kWeightOfEvidence};

// The text, or nothing when it is refused.
template <typename Make>
auto UnlessRefused(const Make& make) -> std::optional<decltype(make())> {
  try {
    return make();
  } catch (const MCBinModel::Refusal&) {
    return std::nullopt;
  }
}

// Nothing that a reader would not see, or a terminal take for an order.
void RequireVisible(std::string_view text, const std::string& what) {
  const auto isPlain = [](char c) { return (c >= ' ' && c <= '~') || c == '\n'; };
  for (;;) {
    const auto odd = std::find_if_not(text.begin(), text.end(), isPlain);
    text.remove_prefix(static_cast<std::size_t>(odd - text.begin()));
    if (text.empty()) return;
    const MCBinModel::CodePoint c = MCBinModel::TakeCodePoint(text);
    const bool isVisible = !MCBinModel::IsControl(c.value) && !MCBinModel::IsHidden(c.value);
    Require(c.isUtf8 && isVisible, what + " shows all that it says");
  }
}

void RequireXml(const std::string& text, const std::string& what) {
  const std::unique_ptr<XML_ParserStruct, decltype(&XML_ParserFree)> parser(
      XML_ParserCreate(nullptr), XML_ParserFree);
  const auto outcome = XML_Parse(parser.get(), text.data(), static_cast<int>(text.size()), 1);
  Require(outcome == XML_STATUS_OK, what + " is XML");
  RequireVisible(text, what);
}

// How a language writes texts and names, beside (), [] and {}.
struct Language {
  std::string_view quotes;
  std::string_view backslashIn;  // quotes in which a backslash goes with the next character
  bool hasLineEndsInQuotes;
};

// The end of what the quote at `begin` opens, or npos. A doubled quote is one more text.
std::size_t EndOfQuote(const std::string& text, std::size_t begin, const Language& language,
                       bool hasBackslash) {
  const char quote = text[begin];
  hasBackslash = hasBackslash || language.backslashIn.find(quote) != std::string_view::npos;
  for (std::size_t at = begin + 1; at < text.size(); ++at) {
    if (text[at] == quote) return at;
    if (text[at] == '\n' && !language.hasLineEndsInQuotes) break;
    if (text[at] == '\\' && hasBackslash) ++at;
  }
  return std::string::npos;
}

// Quotes and brackets close, and no text ends early: outside quotes there is nothing but code.
void RequireClosed(const std::string& text, const Language& language, const std::string& what) {
  const std::string_view opening = "([{";
  const std::string_view closing = ")]}";
  std::string open;
  for (std::size_t at = 0; at < text.size(); ++at) {
    const char c = text[at];
    if (language.quotes.find(c) != std::string_view::npos) {
      const bool isEscapeText = at > 0 && text[at - 1] == 'E';
      at = EndOfQuote(text, at, language, isEscapeText);
      Require(at != std::string::npos, what + " closes its quotes");
    } else if (const auto opens = opening.find(c); opens != std::string_view::npos) {
      open += closing[opens];
    } else if (closing.find(c) != std::string_view::npos) {
      Require(!open.empty() && open.back() == c, what + " closes its brackets");
      open.pop_back();
    } else {
      Require(c == '\n' || (c >= ' ' && c <= '~'), what + " is plain outside quotes");
    }
  }
  Require(open.empty(), what + " closes all brackets");
}

void CheckExports(const BinModel& model, const std::vector<std::size_t>& results,
                  const MCBinModel::ExportOptions& options) {
  for (const std::string& dialect : MCBinModel::SqlDialectNames()) {
    const bool hasBackslash = dialect == "mysql" || dialect == "spark";
    const Language language = {hasBackslash ? "'`" : "'\"", hasBackslash ? "'" : "", true};
    const auto sql = UnlessRefused(
        [&] { return MCBinModel::ExportSql(model, results, options, dialect, "s.t"); });
    if (sql) RequireClosed(*sql, language, "SQL for " + dialect);
  }
  const auto pmml = UnlessRefused([&] { return MCBinModel::ExportPmml(model, results, options); });
  if (pmml) RequireXml(*pmml, "PMML");
  const auto python =
      UnlessRefused([&] { return MCBinModel::ExportPython(model, results, options); });
  if (!python) return;
  RequireClosed(*python, {"\"'", "\"'", false}, "Python");
  RequireVisible(*python, "Python");
}

struct ReportText {
  std::string text;

  MCBinModel::TextSink Sink() {
    return [this](std::string_view piece) { text += piece; };
  }
};

void CheckReports(BinModel model, double adjustment) {
  model.settings.evidenceAdjustment = adjustment;
  RequireXml(MCBinModel::MakeHtmlReport(model), "the page");
  ReportText report;
  MCBinModel::WriteTextReport(model, {true, false}, report.Sink());
  RequireVisible(report.text, "the report");
}

// A CSV file in memory that is read from its beginning.
class CsvText {
 public:
  CsvText(std::string_view text, char delimiter)
      : fFile(memfd_create("data", MFD_CLOEXEC)),
        fIsWritten(MCBin::WriteAll(fFile.Get(), text) && lseek(fFile.Get(), 0, SEEK_SET) == 0),
        fReader(fFile.Get(), "data", delimiter) {
    Require(fIsWritten, "there is memory for the data");
  }

  CsvReader& GetReader() { return fReader; }

 private:
  const FileDescriptor fFile;
  const bool fIsWritten;
  CsvReader fReader;
};

struct Data {
  std::string_view text;
  char delimiter;
  MCBin::MissingTexts missingTexts;
};

// What apply makes of the data: the new columns are the last ones, empty where a value is missing.
std::string Apply(const BinModel& model, const std::vector<std::size_t>& results,
                  const MCBin::BinColumns& columns, const Data& data) {
  CsvText csv(data.text, data.delimiter);
  CsvReader& reader = csv.GetReader();
  const auto names = MCBin::ColumnNames::Read(reader);
  MCBin::BinWriter writer(model, results, columns, names, data.missingTexts, {data.delimiter, '.'});
  std::string out(writer.WriteHeader(reader));
  while (reader.Next()) out += writer.WriteRecord(reader);
  return out;
}

Recount Evaluate(const BinModel& model, const std::vector<std::size_t>& results, const Data& data) {
  CsvText csv(data.text, data.delimiter);
  const auto names = MCBin::ColumnNames::Read(csv.GetReader());
  std::vector<std::string> notes;
  return MCBin::CountRecords(
      model, results, names, std::nullopt, data.missingTexts, csv.GetReader(), [](std::uint64_t) {},
      notes);
}

struct AppliedBins {
  std::uint64_t recordCount = 0;
  std::vector<std::vector<double>> counts;  // for each result those in each bin, with a target
};

AppliedBins CountApplied(const BinModel& model, const std::vector<std::size_t>& results,
                         const std::string& text, const Data& data) {
  CsvText csv(text, data.delimiter);
  CsvReader& reader = csv.GetReader();
  const auto names = MCBin::ColumnNames::Read(reader);
  const MCBinModel::VariableInfo* const target = model.GetTarget(model.results[results.front()]);
  std::optional<MCBin::FieldCoder> classes;
  if (target != nullptr) classes.emplace(*target, names.Find(target->name), data.missingTexts);

  AppliedBins applied;
  for (const std::size_t result : results) {
    applied.counts.emplace_back(model.results[result].cutPoints.size() + 1);
  }
  for (; reader.Next(); ++applied.recordCount) {
    if (classes && std::isnan(classes->Code(reader))) continue;
    const auto bins = reader.GetFields().end() - static_cast<std::ptrdiff_t>(results.size());
    for (std::size_t i = 0; i < results.size(); ++i) {
      const std::string bin(bins[static_cast<std::ptrdiff_t>(i)].text);
      if (bin.empty()) continue;
      const bool isBin =
          std::all_of(bin.begin(), bin.end(), [](char c) { return c >= '0' && c <= '9'; });
      Require(isBin && std::stoul(bin) < applied.counts[i].size(), "what apply writes is a bin");
      ++applied.counts[i][std::stoul(bin)];
    }
  }
  return applied;
}

void CheckCounts(const BinModel& model, const std::vector<std::size_t>& results, const Data& data) {
  const auto text = UnlessRefused([&] { return Apply(model, results, {}, data); });
  const auto evaluated = UnlessRefused([&] { return Evaluate(model, results, data); });
  if (!text || !evaluated) return;
  const AppliedBins applied = CountApplied(model, results, *text, data);
  Require(applied.recordCount == evaluated->recordCount, "apply writes every record");
  for (std::size_t i = 0; i < results.size(); ++i) {
    std::vector<double> weights = evaluated->results[i].counts.binWeights;
    weights.resize(applied.counts[i].size());  // none when there is no case
    Require(applied.counts[i] == weights, "evaluate counts the bins that apply gives");
  }
  ReportText report;
  MCBinModel::WriteEvaluationReport(model, *evaluated, "data", report.Sink());
  RequireVisible(report.text, "the evaluation");
}

}  // namespace

bool TryBins(std::string_view input) {
  if (input.empty()) return false;
  const auto option = static_cast<unsigned char>(input.front());
  input.remove_prefix(1);
  const std::size_t end = std::min(input.find('\0'), input.size());
  const auto model =
      UnlessRefused([&] { return MCBinModel::ParseBinFile(input.substr(0, end), "bins"); });
  if (!model) return false;
  CheckReports(*model, option % 2 == 0 ? 0.0 : 0.5);

  std::optional<std::string> target;
  if (!model->targets.empty()) target = model->targets[option / 2 % model->targets.size()].name;
  const auto results = UnlessRefused([&] { return MCBinModel::SelectResults(*model, target); });
  if (!results) return true;
  MCBinModel::ExportOptions options;
  options.form = kForms[option / 8 % 3];
  if (option >= 128) options.missingText = "-1";
  CheckExports(*model, *results, options);
  CheckCounts(*model, *results,
              {input.substr(std::min(end + 1, input.size())), model->source.delimiter,
               MCBin::MissingTexts(model->source.missingTexts)});
  return true;
}
