#include "algorithm/runreport.h"

#include "algorithm/binalgorithm.h"
#include "algorithm/efbinalgorithm.h"
#include "algorithm/runframe.h"

namespace MCBinning {

namespace {

template <typename Algorithm, typename Interface>
const RunReport& ReportOf(const Interface& algorithm) {
  static const RunReport nothing;
  const auto* const known = dynamic_cast<const Algorithm*>(&algorithm);
  return known != nullptr ? RunFrame::ReportOf(*known) : nothing;
}

}  // namespace

const RunReport& GetRunReport(const IBINAlgorithm& algorithm) {
  return ReportOf<BINAlgorithm>(algorithm);
}

const RunReport& GetRunReport(const IEFBINAlgorithm& algorithm) {
  return ReportOf<EFBINAlgorithm>(algorithm);
}

}  // namespace MCBinning
