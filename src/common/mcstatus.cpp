#include "common/mcstatus.h"

namespace MCBinning {

static_assert(sizeof(long) == 8, "status codes and data are 64-bit integers");

MCStatus::MCStatus() : errorCode(0), severity(0), discreteData{0, 0, 0}, scaleData{0.0, 0.0, 0.0} {}

MCStatus::MCStatus(long code, bool warning)
    : errorCode(code),
      severity(warning ? 1 : -1),
      discreteData{0, 0, 0},
      scaleData{0.0, 0.0, 0.0} {}

bool MCStatus::operator==(const MCStatus& other) const {
  if (errorCode != other.errorCode || severity != other.severity) return false;
  for (int i = 0; i < 3; ++i) {
    if (discreteData[i] != other.discreteData[i] || scaleData[i] != other.scaleData[i]) {
      return false;
    }
  }
  return true;
}

}  // namespace MCBinning
