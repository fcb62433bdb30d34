#include "binmodel/report/shownresults.h"

#include <fmt/format.h>

#include <algorithm>
#include <utility>

namespace MCBinModel {

namespace {

constexpr std::size_t kMostTables = 100;  // unless more were asked for

}  // namespace

ShownResults::ShownResults(std::vector<std::size_t> wanted,
                           const std::function<const AttributeBins&(std::size_t)>& binsOf,
                           const TextStyle& style)
    : order(std::move(wanted)), all(order.size()) {
  const auto hasCutPoints = [&](std::size_t index) { return !binsOf(index).cutPoints.empty(); };
  std::stable_partition(order.begin(), order.end(), hasCutPoints);
  if (style.top > 0 && style.top < all) order.resize(style.top);
  const auto firstUncut = std::partition_point(order.begin(), order.end(), hasCutPoints);
  withCutPoints = static_cast<std::size_t>(firstUncut - order.begin());
  tables = style.top > 0 ? withCutPoints : std::min(withCutPoints, kMostTables);
  if (style.summaryOnly) tables = 0;
}

void ShownResults::AddFacts(ReportWriter& writer) const {
  if (order.size() < all) {
    writer.AddFact(fmt::format("the first {} of {} results", order.size(), all));
  }
  if (tables > 0 && tables < withCutPoints) {
    writer.AddFact(
        fmt::format("tables of the first {} of {} results with cut points", tables, withCutPoints));
  }
}

}  // namespace MCBinModel
