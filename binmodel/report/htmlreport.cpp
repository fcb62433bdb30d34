#include <fmt/format.h>

#include <algorithm>
#include <numeric>
#include <vector>

#include "binmodel/measure/binstatistics.h"
#include "binmodel/report/binreport.h"
#include "binmodel/report/htmlresult.h"
#include "binmodel/report/htmlstyle.h"
#include "binmodel/report/reportcells.h"
#include "binmodel/text/displaytext.h"
#include "binmodel/text/escape.h"
#include "binmodel/text/number.h"
#include "version.h"

namespace MCBinModel {

namespace {

constexpr std::size_t kPageNameWidth = 60;
constexpr const char* kPlainTable = "p";  // what the name of the table's place begins with

// Without the directories, which say nothing to those who get the page.
std::string FileName(const std::string& path) {
  const std::size_t slash = path.find_last_of('/');
  return slash + 1 < path.size() ? path.substr(slash + 1) : path;
}

std::string Name(const VariableInfo& variable) {
  return HtmlText(ElideText(variable.name, kPageNameWidth));
}

class HtmlReport {
 public:
  explicit HtmlReport(const BinModel& model)
      : fModel(model), fSupervised(model.settings.algorithm == Algorithm::kSupervised) {}

  std::string Render() const {
    std::string html = Head() + Introduction();
    if (fModel.targets.empty()) {
      std::vector<std::size_t> order(fModel.results.size());
      std::iota(order.begin(), order.end(), std::size_t{0});
      return html + PlainRanking(order) + Results(order, {}, kPlainTable) + End();
    }
    for (std::size_t target = 0; target < fModel.targets.size(); ++target) html += Target(target);
    return html + End();
  }

 private:
  std::string Title() const {
    return (fSupervised ? "Supervised bins of " : "Equal-frequency bins of ") +
           HtmlText(ElideText(FileName(fModel.source.name), kPageNameWidth));
  }

  std::string Head() const {
    return fmt::format(
        "<!DOCTYPE html>\n"
        "<html xmlns=\"http://www.w3.org/1999/xhtml\" lang=\"en\">\n<head>\n"
        "<meta charset=\"utf-8\"/>\n"
        "<meta http-equiv=\"Content-Security-Policy\" "
        "content=\"default-src 'none'; style-src 'unsafe-inline'\"/>\n"
        "<meta name=\"viewport\" content=\"width=device-width, initial-scale=1\"/>\n"
        "<meta name=\"generator\" content=\"mcbin " MCBINNING_VERSION_STRING
        "\"/>\n"
        "<title>{}</title>\n<style>{}</style>\n</head>\n<body>\n<h1>{}</h1>\n"
        // What the bars of missing cases are filled with.
        "<svg class=\"defs\"><defs><pattern id=\"hatch\" width=\"6\" height=\"6\" "
        "patternUnits=\"userSpaceOnUse\" patternTransform=\"rotate(45)\"><path class=\"kb\" "
        "d=\"M0 0h6v6h-6z\"/><path class=\"km\" d=\"M0 0h3v6h-3z\"/></pattern></defs></svg>\n",
        Title(), kHtmlStyle, Title());
  }

  static std::string End() { return "</body>\n</html>\n"; }

  std::string Introduction() const {
    const BinSettings& settings = fModel.settings;
    const std::optional<WeightInfo>& weight = fModel.source.weight;
    std::string facts = fmt::format("<span>{} records</span> ",
                                    fModel.source.recordCount - fModel.source.dropped.GetTotal());
    if (fModel.source.dropped.GetTotal() > 0) {
      facts += fmt::format("<span>{} dropped for their weight</span> ",
                           fModel.source.dropped.GetTotal());
    }
    if (weight) {
      facts += fmt::format("<span>weighted by {}</span> ",
                           HtmlText(ElideText(weight->name, kPageNameWidth)));
    }
    if (!fSupervised) facts += fmt::format("<span>{} bins asked for</span> ", settings.bins);
    facts += settings.rightClosed ? "<span>bins (a, b] hold their upper border</span> "
                                  : "<span>bins [a, b) hold their lower border</span> ";
    std::string html = "<p class=\"facts\">" + facts + "</p>\n";
    for (const std::string& asked : fModel.refinements) {
      html += "<p>Refined to have " + HtmlText(asked) + ".</p>\n";
    }
    return html;
  }

  std::vector<std::size_t> ResultsOf(std::size_t target) const {
    std::vector<std::size_t> order = OrderByGain(fModel.results);
    std::erase_if(order, [&](std::size_t i) { return fModel.results[i].target != target; });
    return order;
  }

  std::string Target(std::size_t index) const {
    const std::vector<std::size_t> order = ResultsOf(index);
    const VariableInfo& variable = fModel.targets[index];
    HtmlTarget target{GroupClasses(fModel, index), std::nullopt};
    if (variable.GetCategoryCount() == 2) target.event = EventCategory(variable);
    const std::string plainTable = kPlainTable + std::to_string(index);
    return "<h2>Target " + Name(variable) + "</h2>\n" + Conventions(variable, target) +
           TargetRanking(order, target, plainTable) + Results(order, target, plainTable);
  }

  std::string Conventions(const VariableInfo& variable, const HtmlTarget& target) const {
    std::string html =
        "<p class=\"soft\">Information gain is what the bins tell about the target, in bits; "
        "“explained” is its share of the target’s entropy.</p>\n";
    if (!target.event) return html;
    const std::string event = HtmlText(ElideText(variable.GetLabel(*target.event), kPageNameWidth));
    html += fmt::format(
        "<p class=\"soft\">The event is <strong>{0}</strong>. Weight of evidence is "
        "ln((events in the bin / all events) / (others in the bin / all others)): above 0 where "
        "{0} is more frequent than overall, below 0 where it is rarer. {1} ",
        event, MissingConvention());
    const double adjustment = fModel.settings.evidenceAdjustment;
    if (adjustment > 0.0) {
      return html + fmt::format(
                        "{} is added to the weight of both classes in every bin before "
                        "it is taken.</p>\n",
                        FormatNumber(adjustment));
    }
    return html + "A bin without one of the classes makes it infinite; nothing is smoothed.</p>\n";
  }

  // Results of an old bin file have not counted them.
  const char* MissingConvention() const {
    const bool countsMissing =
        std::any_of(fModel.results.begin(), fModel.results.end(),
                    [](const AttributeBins& bins) { return bins.missing.has_value(); });
    return countsMissing ? "Missing cases are a bin."
                         : "Missing cases were not counted by class and take no part.";
  }

  std::string TargetRanking(const std::vector<std::size_t>& order, const HtmlTarget& target,
                            const std::string& plainTable) const {
    double largestGain = 0.0;
    for (const std::size_t result : order) {
      largestGain = std::max(largestGain, fModel.results[result].informationGain.value_or(0.0));
    }
    std::string rows;
    for (const std::size_t result : order) {
      if (!IsPlain(result)) rows += TargetRow(result, target, largestGain);
    }
    return Ranking(std::string("<th>information gain</th><th>explained</th>") +
                       (target.event ? "<th>information value</th>" : ""),
                   rows) +
           PlainFact(order, plainTable);
  }

  std::string TargetRow(std::size_t result, const HtmlTarget& target, double largestGain) const {
    const AttributeBins& bins = fModel.results[result];
    const double gain = bins.informationGain.value_or(0.0);
    const double bar = largestGain > 0.0 ? gain / largestGain : 0.0;
    std::string cells = fmt::format(
        "<td class=\"gain\" style=\"background-size:calc({:.4g}*(100% - 1.1rem)) 3px\">{}</td>",
        bar, HtmlMeasure(bins.informationGain));
    cells += fmt::format("<td>{}</td>", HtmlShare(gain, Entropy(SumClassWeights(bins))));
    if (target.event) {
      cells += fmt::format("<td>{}</td>", HtmlInformationValue(fModel, bins));
    }
    return RankingRow(result, cells);
  }

  std::string PlainRanking(const std::vector<std::size_t>& order) const {
    std::string rows;
    for (const std::size_t result : order) {
      if (IsPlain(result)) continue;
      rows += RankingRow(
          result, fmt::format("<td>{}</td>", FormatShare(LargestShareDeviation(
                                                 fModel.results[result], fModel.settings.bins))));
    }
    return "<p class=\"soft\">Deviation is the largest distance of a bin’s share from the ideal "
           "one, which charts show as a dashed line.</p>\n" +
           Ranking("<th>deviation</th>", rows) + PlainFact(order, kPlainTable);
  }

  bool IsPlain(std::size_t result) const { return IsPlainHtmlResult(fModel.results[result]); }

  // Leads to the table of the attributes that the ranking leaves out.
  std::string PlainFact(const std::vector<std::size_t>& order,
                        const std::string& plainTable) const {
    const auto count =
        std::count_if(order.begin(), order.end(), [this](auto result) { return IsPlain(result); });
    if (count == 0) return {};
    return fmt::format(
        "<p class=\"soft\"><a href=\"#{}\">{}</a> at the end.</p>\n", plainTable,
        count == 1 ? "1 attribute without cut points has a row"
                   : fmt::format("{} attributes without cut points have a row each", count));
  }

  // The table that links to the results.
  static std::string Ranking(const std::string& measureHeaders, const std::string& rows) {
    if (rows.empty()) return {};
    return "<div class=\"scroll\"><table>\n<thead><tr><th class=\"t\">attribute</th>" +
           measureHeaders +
           "<th>bins</th><th>missing</th><th class=\"t\">status</th></tr></thead>\n<tbody>\n" +
           rows + "</tbody></table></div>\n";
  }

  std::string RankingRow(std::size_t result, const std::string& measures) const {
    const AttributeBins& bins = fModel.results[result];
    const double missing =
        bins.missing ? bins.missing->weight : bins.weightWithMissing - bins.validWeight;
    return fmt::format(
        "<tr><td class=\"t w\"><a href=\"#r{}\">{}</a></td>{}<td>{}</td><td>{}</td>"
        "<td class=\"t s\">{}</td></tr>\n",
        result, Name(fModel.GetAttribute(bins)), measures, bins.binWeights.size(),
        HtmlShare(missing, bins.missing ? CountedWeight(bins) : bins.weightWithMissing),
        StatusCell(bins));
  }

  std::string Results(const std::vector<std::size_t>& order, const HtmlTarget& target,
                      const std::string& plainTable) const {
    std::string html;
    std::vector<std::size_t> plain;
    for (const std::size_t result : order) {
      if (IsPlain(result)) {
        plain.push_back(result);
      } else {
        html += RenderHtmlResult(fModel, result, target);
      }
    }
    return html + RenderHtmlPlainTable(fModel, plain, target, plainTable);
  }

  const BinModel& fModel;
  const bool fSupervised;
};

}  // namespace

std::string MakeHtmlReport(const BinModel& model) { return HtmlReport(model).Render(); }

}  // namespace MCBinModel
