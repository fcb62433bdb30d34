#include "binmodel/model/statustext.h"

#include "metadata/describe.h"

namespace MCBinModel {

std::string DescribeStatus(const MCBinning::MCStatus& status) {
  return MCBinning::Describe(status);
}

const char* DescribeSeverity(const MCBinning::MCStatus& status) {
  return status.IsOK() ? "ok" : status.IsWarning() ? "warning" : "error";
}

}  // namespace MCBinModel
