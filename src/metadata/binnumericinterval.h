#pragma once

#include <ostream>

#include "../common/export.h"

// A closed interval of numbers; both ends always belong to it.
//
// An infinite end is stood for by the largest finite double: -DBL_MAX on the left, DBL_MAX
// on the right. Ends are taken as they come: a left end above the right one makes the
// interval empty, which then contains nothing. A plain value.
class MCBINNING_API BINNumericInterval {
 public:
  // [0, 0].
  BINNumericInterval();

  // [left, right]. Write the ends as doubles: with whole numbers the call is ambiguous with
  // the next constructor.
  BINNumericInterval(double left, double right);

  // A half line: up to `end` when `toMinusInfinity` is true, from `end` on otherwise.
  BINNumericInterval(double end, bool toMinusInfinity);

  // Stores the end; false when the right end is now not at or above the left one.
  bool SetLeftEnd(double left);
  bool SetRightEnd(double right);

  // The ends as they are stored, and whether each stands for an infinite one.
  double GetLeftEnd() const { return fLeftEnd; }
  double GetRightEnd() const { return fRightEnd; }
  bool IsLeftEndInfinite() const;
  bool IsRightEndInfinite() const;

  // A NaN is never contained.
  bool Contains(double x) const { return fLeftEnd <= x && x <= fRightEnd; }

  // Whether the left end is above the right one.
  bool IsEmpty() const { return fLeftEnd > fRightEnd; }

  // Equal ends; an end that is NaN makes two intervals unequal.
  bool operator==(const BINNumericInterval& other) const;

  // Writes a readable dump, in the stream's own formatting.
  std::ostream& Display(std::ostream& os) const;

 private:
  double fLeftEnd;
  double fRightEnd;
};
