#pragma once

#include "common/mcstatus.h"

namespace MCBinning {

// The code of every status that the library raises; docs/status-codes.md says when.
enum class StatusCode : long {
  kCancelled = 1,
  kOutOfMemory = 3,
  kCutPointsMisfit = 120002,
  kInvalidVariableList = 120003,
  kNoData = 120004,
  kIsWeightOrTarget = 120005,
  kTargetNotCategorical = 120006,
  kNoUsablePair = 120008,
  kNumberOfBinsNotSet = 120009,
  kTargetUnusable = 120010,
  kNoSuchAttribute = 120011,
  kCategoryCodeOutOfRange = 120012,
  kNoSuchVariable = 120013,
  kOneDistinctValue = 120014,
  kNoValidCase = 120015,
  kOneTargetCategory = 120016,
  kNoCutAccepted = 120017,
  kSomeResultNotOK = 120018,
  kNoCutPoint = 120019,
  kNoResults = 120020,
  kTempFileFailed = 120021,
};

inline MCStatus Error(StatusCode code) { return MCStatus(static_cast<long>(code), false); }

inline MCStatus Warning(StatusCode code) { return MCStatus(static_cast<long>(code), true); }

// With what the status is about as datum 0.
inline MCStatus With(MCStatus status, long datum) {
  status.SetDiscreteDatum(0, datum);
  return status;
}

inline bool HasCode(const MCStatus& status, StatusCode code) {
  return status.GetErrorCode() == static_cast<long>(code);
}

}  // namespace MCBinning
