#include <fmt/format.h>

#include <numeric>
#include <utility>
#include <vector>

#include "binmodel/report/binreport.h"
#include "binmodel/report/comparisonreport.h"
#include "binmodel/report/evaluationcells.h"
#include "binmodel/report/reportwriter.h"
#include "binmodel/report/resultrecords.h"
#include "binmodel/report/seriesreport.h"
#include "binmodel/report/shownresults.h"
#include "binmodel/text/displaytext.h"

namespace MCBinModel {

void WriteEvaluationReport(const BinModel& model, const Recount& recount, std::string_view dataName,
                           const TextSink& write) {
  WriteEvaluationReport(model, {{std::string(dataName), recount}}, {}, write);
}

void WriteEvaluationReport(const BinModel& model, const std::vector<NamedRecount>& data,
                           const TextStyle& style, const TextSink& write) {
  const NamedRecount& first = data.front();
  const std::vector<RecountedBins>& results = first.recount.results;
  std::vector<std::size_t> order(results.size());
  std::iota(order.begin(), order.end(), std::size_t{0});
  const ShownResults shown(
      std::move(order),
      [&](std::size_t i) -> const AttributeBins& { return model.results[results[i].result]; },
      style);
  if (style.format != TableFormat::kText && style.format != TableFormat::kMarkdown) {
    const DataTable table = style.summaryOnly ? ListRecountedResults(model, data, shown.order)
                                              : ListRecountedBins(model, data, shown.order);
    return table.Write(style.format, write);
  }
  ReportWriter writer(style.format, write);
  const std::string& source = model.source.name;  // empty for tables in memory
  const std::string bins = source.empty() ? "Bins" : "Bins of " + PrintableText(source);
  if (data.size() == 1) {
    const AttributeBins& counts = results.front().counts;
    writer.AddTitle(fmt::format("{} on {}: {} records{}", bins, PrintableText(first.name),
                                UsedRecords(first.recount),
                                TargetFact(model, model.GetTarget(counts))));
    shown.AddFacts(writer);
    WriteComparison(model, first, shown, writer);
  } else {
    const VariableInfo* const target = model.GetTarget(model.results[results.front().result]);
    writer.AddTitle(fmt::format("{} on {} files{}", bins, data.size(), TargetFact(model, target)));
    shown.AddFacts(writer);
    write("\n");
    WriteSeries(model, data, shown, writer);
  }
}

}  // namespace MCBinModel
