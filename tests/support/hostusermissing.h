#pragma once

#include <ostream>

#include "metadata/ibinusermissing.h"

// A host's own kind of user-missing definition. Counts the objects alive, so a test sees
// which were deleted.
class HostUserMissing : public IBINUserMissing {
 public:
  explicit HostUserMissing(int dataType) : fDataType(dataType) { ++alive; }
  HostUserMissing(const HostUserMissing& other)
      : IBINUserMissing(other), fDataType(other.fDataType) {
    ++alive;
  }
  HostUserMissing& operator=(const HostUserMissing&) = delete;
  ~HostUserMissing() override { --alive; }

  int GetDataType() const override { return fDataType; }
  int GetNDiscreteValues() const override { return 0; }
  bool HasInterval() const override { return false; }
  IBINUserMissing* Clone() const override { return new HostUserMissing(*this); }
  bool IsEqualTo(const IBINUserMissing* other) const override {
    return other != nullptr && other->GetDataType() == fDataType;
  }
  std::ostream& Display(std::ostream& os) const override { return os << "host\n"; }

  static inline int alive = 0;

 private:
  int fDataType;
};
