#pragma once

#include <memory>

#include "metadata/ibinusermissing.h"

namespace MCBinning {

// How variables and encoders own a user-missing definition; null means none.

inline std::unique_ptr<IBINUserMissing> CloneUserMissing(const IBINUserMissing* userMissing) {
  return std::unique_ptr<IBINUserMissing>(userMissing != nullptr ? userMissing->Clone() : nullptr);
}

inline bool IsNullOrOfType(const IBINUserMissing* userMissing, int dataType) {
  return userMissing == nullptr || userMissing->GetDataType() == dataType;
}

// Puts `userMissing` in place of the object held, which is deleted, unless it is the very
// same. False for another data type: `held` is unchanged and the caller keeps the object.
inline bool TakeUserMissing(std::unique_ptr<IBINUserMissing>& held, IBINUserMissing* userMissing,
                            int dataType) {
  if (!IsNullOrOfType(userMissing, dataType)) return false;
  if (userMissing != held.get()) held.reset(userMissing);
  return true;
}

}  // namespace MCBinning
