#include "binmodel/report/reportcells.h"

#include <fmt/format.h>

#include <cmath>

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

}  // namespace MCBinModel
