#include "binmodel/report/reportcells.h"

#include <fmt/format.h>

#include <algorithm>
#include <cmath>
#include <numeric>

#include "binmodel/model/severity.h"
#include "binmodel/text/number.h"
#include "metadata/describe.h"

namespace MCBinModel {

std::string MeasureCell(const std::optional<double>& measure) {
  if (!measure) return "-";
  if (std::isinf(*measure)) return *measure > 0.0 ? "+inf" : "-inf";
  return FormatFixed(*measure, 4);
}

std::string StatusCell(const MCBinning::MCStatus& status) {
  if (status.IsOK()) return "ok";
  return fmt::format("{}: {} ({})", DescribeSeverity(status), MCBinning::Describe(status),
                     status.GetErrorCode());
}

std::vector<std::size_t> OrderByGain(const std::vector<AttributeBins>& results) {
  std::vector<std::size_t> order(results.size());
  std::iota(order.begin(), order.end(), std::size_t{0});
  std::stable_sort(order.begin(), order.end(), [&](std::size_t a, std::size_t b) {
    return results[a].informationGain > results[b].informationGain;
  });
  return order;
}

}  // namespace MCBinModel
