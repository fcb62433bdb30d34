#pragma once

#include <ostream>

#include "../common/export.h"

// The values of one variable that its user declared missing.
//
// BINNumericUserMissing and BINStringUserMissing are the two kinds. A host may derive its
// own class; variables and encoders then own, copy and return such an object, but no value
// is missing by it. Copies, Clone() and what adds a value may throw std::bad_alloc.
class MCBINNING_API IBINUserMissing {
 public:
  // What GetDataType() returns.
  enum UserMissingType : int { UserMissingNumeric = 0, UserMissingString = 1 };

  virtual ~IBINUserMissing();

  // The kind of values it holds. A variable or encoder takes one kind only.
  virtual int GetDataType() const = 0;

  // The number of discrete values, repeated ones included.
  virtual int GetNDiscreteValues() const = 0;

  // Whether an interval belongs to it, too.
  virtual bool HasInterval() const = 0;

  // A deep copy; the caller deletes it.
  virtual IBINUserMissing* Clone() const = 0;

  // Same kind, same discrete values in the same order and same interval; labels do not
  // count. Null is never equal.
  virtual bool IsEqualTo(const IBINUserMissing* other) const = 0;

  // Writes a readable dump, in the stream's own formatting.
  virtual std::ostream& Display(std::ostream& os) const = 0;

 protected:
  // The base class holds nothing.
  IBINUserMissing() = default;
  IBINUserMissing(const IBINUserMissing&) = default;
  IBINUserMissing& operator=(const IBINUserMissing&) = default;
};
